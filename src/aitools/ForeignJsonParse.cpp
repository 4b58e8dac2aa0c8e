#include "aitools/ForeignJson.h"

#include <nlohmann/json.hpp>

#include <clocale>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace hueshelf {

namespace {

// Floating numbers as long double: the text is what is kept, and the wider type only moves the
// point at which the reader calls a number an overflow (1e400 is fine, 1e5000 is not where
// long double is wider than double).
using WideJson = nlohmann::basic_json<std::map, std::vector, std::string, bool, std::int64_t,
                                      std::uint64_t, long double>;

// Builds the tree from the reader's events, taking every number's text as it was written
// (integers are printed back from their exact 64-bit value, which is the same text but for a
// "-0", which becomes "0").
class TreeBuilder final : public nlohmann::json_sax<WideJson> {
public:
    bool null() override { return add(ForeignJson()); }
    bool boolean(bool value) override { return add(ForeignJson::boolean(value)); }
    bool number_integer(number_integer_t value) override {
        return add(ForeignJson::number(QByteArray::number(qint64(value))));
    }
    bool number_unsigned(number_unsigned_t value) override {
        return add(ForeignJson::number(QByteArray::number(quint64(value))));
    }
    bool number_float(number_float_t, const string_t& text) override {
        // The reader hands its buffer over with the locale's decimal point in place of the
        // file's "." (it feeds that buffer to strtod); put the file's own text back.
        QByteArray number = QByteArray::fromStdString(text);
        if (m_decimalPoint != '.')
            number.replace(m_decimalPoint, '.');
        return add(ForeignJson::number(std::move(number)));
    }
    bool string(string_t& value) override {
        return add(ForeignJson::string(QString::fromStdString(value)));
    }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(ForeignJson::object()); }
    bool key(string_t& value) override {
        m_keys.back() = QString::fromStdString(value);
        return true;
    }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(ForeignJson::array()); }
    bool end_array() override { return close(); }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override {
        return false;
    }

    std::optional<ForeignJson> takeRoot() { return std::move(m_root); }

private:
    bool open(ForeignJson container) {
        if (m_open.size() >= std::size_t(ForeignJson::maxDepth))
            return false;
        m_open.push_back(std::move(container));
        m_keys.emplace_back();
        return true;
    }

    bool close() {
        ForeignJson done = std::move(m_open.back());
        m_open.pop_back();
        m_keys.pop_back();
        return add(std::move(done));
    }

    bool add(ForeignJson value) {
        if (m_open.empty()) {
            m_root = std::move(value);
            return true;
        }
        ForeignJson& parent = m_open.back();
        if (parent.kind() == ForeignJson::Kind::array)
            parent.append(std::move(value));
        else
            parent.set(m_keys.back(), std::move(value));
        return true;
    }

    // As the reader determines it, when it is made.
    const char m_decimalPoint = [] {
        const std::lconv* conventions = std::localeconv();
        return conventions->decimal_point ? *conventions->decimal_point : '.';
    }();
    std::vector<ForeignJson> m_open;
    std::vector<QString> m_keys; // the pending key of each open container (unused for arrays)
    std::optional<ForeignJson> m_root;
};

} // namespace

std::optional<ForeignJson> ForeignJson::parse(const QByteArray& bytes) {
    TreeBuilder builder;
    bool parsed = false;
    try {
        parsed = WideJson::sax_parse(bytes.cbegin(), bytes.cend(), &builder,
                                     WideJson::input_format_t::json, /*strict=*/true,
                                     /*ignore_comments=*/false);
    } catch (const std::exception&) {
        return std::nullopt;
    }
    if (!parsed)
        return std::nullopt;
    return builder.takeRoot();
}

} // namespace hueshelf
