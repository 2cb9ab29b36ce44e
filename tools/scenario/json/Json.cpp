// Builds the value of a line from the events of the JSON library, and refuses what that would let
// pass.
#include "scenario/json/Json.h"

#include <utility>

#include "scenario/json/JsonErrors.h"
#include "scenario/json/LineError.h"

namespace scenario {
namespace {

// Builds the value from the parser's events. What a parser of ours must not let pass, and the
// library's own builder does, is refused here.
class Builder : public nlohmann::json_sax<Json> {
 public:
    Builder(std::string_view line, Json& root) : mLine(line), mRoot(root) {}

    bool null() override { return add(nullptr); }
    bool boolean(bool value) override { return add(value); }
    bool number_integer(int64_t value) override { return add(value); }
    bool number_unsigned(uint64_t value) override { return add(value); }
    bool number_float(float value, std::string const& /*text*/) override { return add(value); }
    bool string(std::string& value) override { return add(std::move(value)); }
    bool binary(Json::binary_t& /*value*/) override { return fail("binary data"); }

    bool start_object(size_t /*elements*/) override { return open(Json::object()); }
    bool end_object() override { return close(); }
    bool start_array(size_t /*elements*/) override { return open(Json::array()); }
    bool end_array() override { return close(); }

    bool key(std::string& name) override {
        auto const [entry, isNew] = mOpen.back()->get_ref<Json::object_t&>().try_emplace(name);
        if (!isNew) {
            return fail("field \"" + name + "\" appears twice");
        }
        mField = &entry->second;
        return true;
    }

    bool parse_error(size_t position, std::string const& /*token*/,
                     Json::exception const& error) override {
        mIsUnfinished = position > mLine.size();
        return fail(explainJsonError(error.what(), mLine, position));
    }

    std::string const& error() const { return mError; }
    bool isUnfinished() const { return mIsUnfinished; }

 private:
    template <typename T>
    bool add(T&& value) {
        place(Json(std::forward<T>(value)));
        return true;
    }

    bool open(Json container) {
        if (mOpen.size() == kDeepest) {
            return fail("nested too deeply");
        }
        mOpen.push_back(place(std::move(container)));
        return true;
    }

    bool close() {
        mOpen.pop_back();
        return true;
    }

    Json* place(Json value) {
        if (mOpen.empty()) {
            mRoot = std::move(value);
            return &mRoot;
        }
        if (mOpen.back()->is_object()) {
            *mField = std::move(value);
            return mField;
        }
        return &mOpen.back()->get_ref<Json::array_t&>().emplace_back(std::move(value));
    }

    bool fail(std::string message) {
        mError = std::move(message);
        return false;
    }

    std::string_view mLine;
    Json& mRoot;
    std::vector<Json*> mOpen;  // containers from the outermost to the one being filled
    Json* mField = nullptr;    // the field of the innermost object that awaits its value
    std::string mError;
    bool mIsUnfinished = false;
};

}  // namespace

Json parseObject(std::string_view line) {
    // The parser takes a zero byte for the end and a byte order mark for nothing.
    if (line.find('\0') != std::string_view::npos) {
        throw LineError("contains a zero byte: not a text in UTF-8");
    }
    auto const first = line.find_first_not_of(" \t\r");
    if (first == std::string_view::npos || line[first] != '{') {
        throw LineError(explainNoObject(line));
    }

    Json root;
    Builder builder(line, root);
    if (!Json::sax_parse(line.begin(), line.end(), &builder)) {
        if (builder.isUnfinished()) {
            throw UnfinishedLine(builder.error());
        }
        throw LineError(builder.error());
    }
    return root;
}

float floatOf(Json const& number) {
    // The parser makes only negative literals signed integers.
    if (number.is_number_integer() && !number.is_number_unsigned() && number.get<int64_t>() == 0) {
        return -0.0F;
    }
    return number.get<float>();
}

}  // namespace scenario
