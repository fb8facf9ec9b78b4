#include "common2/data/JsonLookup.h"

#include "common2/logging/Common2Loggers.h"

#include <boost/json/parse.hpp>

namespace json = boost::json;

JsonLookup::JsonLookup(std::string_view text, std::string& error) {
    error.clear();
    json::error_code failure;
    root = json::parse(json::string_view(text.data(), text.size()), failure);
    if (failure) {
        error = failure.message();
        COMMON2_LOG(DBG_ERROR, "JsonLookup::JsonLookup") << "failed to parse json: " << error;
    }
}

const json::value* JsonLookup::find(std::string_view key) const {
    const json::object* object = root.if_object();
    return object ? object->if_contains(json::string_view(key.data(), key.size())) : nullptr;
}

std::string JsonLookup::GetString(std::string_view key) const {
    const json::value* value = find(key);
    const json::string* text = value ? value->if_string() : nullptr;
    return text ? std::string(text->data(), text->size()) : std::string();
}

std::map<std::string, std::string> JsonLookup::GetStringMap(std::string_view key) const {
    std::map<std::string, std::string> texts;
    const json::value* value = find(key);
    const json::object* object = value ? value->if_object() : nullptr;
    if (object) {
        for (const json::key_value_pair& member : *object) {
            if (const json::string* text = member.value().if_string()) {
                texts.emplace(std::string(member.key().data(), member.key().size()),
                              std::string(text->data(), text->size()));
            }
        }
    }
    return texts;
}
