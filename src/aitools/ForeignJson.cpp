#include "aitools/ForeignJson.h"

#include <algorithm>

namespace hueshelf {

namespace {

// QString's operator< compares UTF-16 code units, the order the keys are kept in.
auto lowerBound(const std::vector<ForeignJson::Member>& members, const QString& key) {
    return std::lower_bound(members.begin(), members.end(), key,
                            [](const ForeignJson::Member& member, const QString& wanted) {
                                return member.key < wanted;
                            });
}

} // namespace

ForeignJson ForeignJson::boolean(bool value) {
    ForeignJson json;
    json.m_kind = Kind::boolean;
    json.m_boolean = value;
    return json;
}

ForeignJson ForeignJson::number(QByteArray text) {
    ForeignJson json;
    json.m_kind = Kind::number;
    json.m_number = std::move(text);
    return json;
}

ForeignJson ForeignJson::string(QString value) {
    ForeignJson json;
    json.m_kind = Kind::string;
    json.m_string = std::move(value);
    return json;
}

ForeignJson ForeignJson::array(std::vector<ForeignJson> items) {
    ForeignJson json;
    json.m_kind = Kind::array;
    json.m_items = std::move(items);
    return json;
}

ForeignJson ForeignJson::object() {
    ForeignJson json;
    json.m_kind = Kind::object;
    return json;
}

void ForeignJson::append(ForeignJson item) {
    m_items.push_back(std::move(item));
}

const ForeignJson* ForeignJson::find(const QString& key) const {
    const auto it = lowerBound(m_members, key);
    if (it == m_members.end() || it->key != key)
        return nullptr;
    return &it->value;
}

void ForeignJson::set(const QString& key, ForeignJson value) {
    const auto it = lowerBound(m_members, key);
    if (it != m_members.end() && it->key == key) {
        m_members[std::size_t(it - m_members.begin())].value = std::move(value);
        return;
    }
    m_members.insert(it, Member{key, std::move(value)});
}

bool ForeignJson::remove(const QString& key) {
    const auto it = lowerBound(m_members, key);
    if (it == m_members.end() || it->key != key)
        return false;
    m_members.erase(it);
    return true;
}

bool ForeignJson::operator==(const ForeignJson& other) const {
    if (m_kind != other.m_kind)
        return false;
    switch (m_kind) {
    case Kind::null:
        return true;
    case Kind::boolean:
        return m_boolean == other.m_boolean;
    case Kind::number:
        return m_number == other.m_number;
    case Kind::string:
        return m_string == other.m_string;
    case Kind::array:
        return m_items == other.m_items;
    case Kind::object:
        return m_members == other.m_members;
    }
    return false;
}

} // namespace hueshelf
