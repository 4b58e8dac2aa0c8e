// The verdict on one palette that both this device and the folder hold.

#include "SyncEngineTestSupport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace hueshelf::testing {
namespace {

using Kind = SyncResult::Kind;

const QString kShadow = u"aaaaaaaaaaaaaaaa"_s;
const QString kOther = u"bbbbbbbbbbbbbbbb"_s;
const QString kThird = u"cccccccccccccccc"_s;

struct Pair {
    ColorTemplate local;
    SyncableTemplate remote;
};

Pair pair(const QString& localHash, const QString& remoteHash, double localTime,
          double remoteTime) {
    ColorTemplate local = makePalette(u"Brand"_s, {makeColor(u"Ink"_s, u"#101010"_s)});
    local.contentHash = localHash;
    local.updatedAt = localTime;
    SyncableTemplate remote = remoteRecord(local, remoteTime);
    remote.contentHash = remoteHash;
    return {local, remote};
}

struct ShadowCase {
    const char* label;
    QString local;
    QString remote;
    Kind expected;
};

class WithShadow : public ::testing::TestWithParam<ShadowCase> {};

TEST_P(WithShadow, HashesAgainstTheLastAgreementDecide) {
    const ShadowCase& c = GetParam();
    // The clocks point the other way in every row: with a shadow they must not count.
    const Pair p = pair(c.local, c.remote, 9'000.0, 1'000.0);
    const ShadowTemplateState shadow{kShadow, 4, 500.0};
    const SyncResult result = StoreSync::resolveSync(p.local, p.remote, shadow);
    EXPECT_EQ(result.kind, c.expected);
    if (c.expected == Kind::acceptRemote) {
        EXPECT_EQ(result.remote, p.remote);
    }
    if (c.expected == Kind::acceptLocal) {
        EXPECT_EQ(result.local, p.local);
    }
    if (c.expected == Kind::conflict) {
        EXPECT_EQ(result.local, p.local);
        EXPECT_EQ(result.remote, p.remote);
    }
}

INSTANTIATE_TEST_SUITE_P(
    ResolveSync, WithShadow,
    ::testing::Values(ShadowCase{"neither changed", kShadow, kShadow, Kind::noChange},
                      ShadowCase{"only the folder changed", kShadow, kOther, Kind::acceptRemote},
                      ShadowCase{"only this device changed", kOther, kShadow, Kind::acceptLocal},
                      ShadowCase{"both changed alike", kOther, kOther, Kind::noChange},
                      ShadowCase{"both changed differently", kOther, kThird, Kind::conflict}),
    [](const auto& testParam) {
        std::string name = testParam.param.label;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

struct ClockCase {
    const char* label;
    double local;
    double remote;
    bool sameHash;
    Kind expected;
};

class WithoutShadow : public ::testing::TestWithParam<ClockCase> {};

TEST_P(WithoutShadow, TheClocksDecide) {
    const ClockCase& c = GetParam();
    const Pair p = pair(kShadow, c.sameHash ? kShadow : kOther, c.local, c.remote);
    EXPECT_EQ(StoreSync::resolveSync(p.local, p.remote, std::nullopt).kind, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    ResolveSync, WithoutShadow,
    ::testing::Values(
        ClockCase{"remote earlier", 2'000.0, 1'999.5, false, Kind::acceptLocal},
        ClockCase{"remote earlier same content", 2'000.0, 1'000.0, true, Kind::acceptLocal},
        ClockCase{"local earlier", 1'999.5, 2'000.0, false, Kind::acceptRemote},
        ClockCase{"local earlier same content", 1'000.0, 2'000.0, true, Kind::acceptRemote},
        ClockCase{"equal times same content", 2'000.0, 2'000.0, true, Kind::noChange},
        ClockCase{"equal times different content", 2'000.0, 2'000.0, false, Kind::conflict}),
    [](const auto& testParam) {
        std::string name = testParam.param.label;
        std::replace(name.begin(), name.end(), ' ', '_');
        return name;
    });

TEST(ResolveSyncHashes, AreComparedAsTextAndRevisionsDontCount) {
    // Upper-case digits are a different text, so with the shadow in lower case this device
    // counts as changed; a far higher remote revision changes nothing.
    Pair p = pair(kShadow.toUpper(), kShadow, 1.0, 1.0);
    p.remote.revision = 99;
    const ShadowTemplateState shadow{kShadow, 1, 0.0};
    EXPECT_EQ(StoreSync::resolveSync(p.local, p.remote, shadow).kind, Kind::acceptLocal);
}

class ResolveSyncInStore : public SyncEngineFixture {};

TEST_F(ResolveSyncInStore, LooksUpTheShadowOfThePalettesId) {
    const Pair p = pair(kShadow, kOther, 9'000.0, 1'000.0);
    const ColorTemplate unrelated = makePalette(u"Other"_s, {makeColor(u"X"_s, u"#000000"_s)});
    startDevice({p.local, unrelated});
    // Without a shadow the later local clock wins...
    EXPECT_EQ(storeSync->resolveSync(p.local, p.remote).kind, Kind::acceptLocal);
    // ...another palette's shadow is no business of this one...
    store->setShadowState(unrelated.id, ShadowTemplateState{kShadow, 1, 0.0});
    EXPECT_EQ(storeSync->resolveSync(p.local, p.remote).kind, Kind::acceptLocal);
    // ...and with its own, the folder's change is taken.
    store->setShadowState(p.local.id, ShadowTemplateState{kShadow, 1, 0.0});
    EXPECT_EQ(storeSync->resolveSync(p.local, p.remote).kind, Kind::acceptRemote);
}

} // namespace
} // namespace hueshelf::testing
