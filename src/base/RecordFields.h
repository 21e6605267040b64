#pragma once

#include "base/Date.h"
#include "base/Json.h"
#include "base/UUID.h"

#include <concepts>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <vector>

// What follows from a record's list of fields: its JSON form and its hash. A record gives the list once,
// where its arguments' namespace is searched:
//
//     static constexpr auto fieldsOf(const Category*) {
//         return std::tuple{Field{"id", &Category::id}, Field{"kind", &Category::kind, quorlKindFrom}, …};
//     }
//
// An optional member is left out when absent, an enumeration stands as its `rawString`, a date as seconds
// since 1970, a UUID as its text, a record as its object. Thread: any. Failures: an empty result.
namespace quorl {

// One member under its key; an enumeration brings the function that reads its raw strings.
template <class Record, class Member, class Reader = std::nullptr_t>
struct Field {
    const char* key;
    Member Record::*member;
    Reader fromRaw = nullptr;
};

template <class Record, class Member>
Field(const char*, Member Record::*) -> Field<Record, Member>;

template <class Record, class Member, class Reader>
Field(const char*, Member Record::*, Reader) -> Field<Record, Member, Reader>;

template <class Record>
[[nodiscard]] Json::Value encodeRecord(const Record& record);

/// Nothing if a key is missing, of another type, or holds an unknown raw string. Further keys do not matter.
template <class Record>
[[nodiscard]] std::optional<Record> decodeRecord(const Json::Value& value);

namespace fields {

template <class Type>
inline constexpr bool isOptional = false;
template <class Type>
inline constexpr bool isOptional<std::optional<Type>> = true;

template <class Type>
inline constexpr bool isList = false;
template <class Type>
inline constexpr bool isList<std::vector<Type>> = true;

template <class Type>
concept Plain = std::same_as<Type, std::string> || std::same_as<Type, bool> ||
    std::same_as<Type, std::int64_t> || std::same_as<Type, double>;

template <class Type>
Json::Value encode(const Type& value) {
    if constexpr (Plain<Type>) {
        return value;
    } else if constexpr (std::is_enum_v<Type>) {
        return rawString(value);
    } else if constexpr (std::same_as<Type, UUID>) {
        return value.text();
    } else if constexpr (std::same_as<Type, Date>) {
        return secondsSince1970(value);
    } else if constexpr (isList<Type>) {
        auto list = Json::Value::array();
        for (const auto& element : value)
            list.push_back(encode(element));
        return list;
    } else {
        return encodeRecord(value);
    }
}

template <class Type, class Reader>
std::optional<Type> decode(const Json::Value& value, Reader fromRaw) {
    if constexpr (std::same_as<Type, std::string>) {
        const auto* text = Json::text(&value);
        return text ? std::optional(*text) : std::nullopt;
    } else if constexpr (std::same_as<Type, bool>) {
        return Json::boolean(&value);
    } else if constexpr (std::same_as<Type, std::int64_t>) {
        return Json::wholeNumber(&value);
    } else if constexpr (std::same_as<Type, double>) {
        return Json::number(&value);
    } else if constexpr (std::is_enum_v<Type>) {
        const auto* text = Json::text(&value);
        return text ? fromRaw(*text) : std::nullopt;
    } else if constexpr (std::same_as<Type, UUID>) {
        const auto* text = Json::text(&value);
        return text ? UUID::parse(*text) : std::nullopt;
    } else if constexpr (std::same_as<Type, Date>) {
        const auto seconds = Json::number(&value);
        return seconds ? std::optional(dateFromSeconds(*seconds)) : std::nullopt;
    } else if constexpr (isList<Type>) {
        if (!value.is_array())
            return std::nullopt;
        Type list;
        for (const auto& element : value) {
            auto decoded = decode<typename Type::value_type>(element, fromRaw);
            if (!decoded)
                return std::nullopt;
            list.push_back(std::move(*decoded));
        }
        return list;
    } else {
        return decodeRecord<Type>(value);
    }
}

// Answers whether the member could be read.
template <class Record, class Member, class Reader>
bool decodeInto(Record& record, const Json::Value& object, const Field<Record, Member, Reader>& field) {
    const auto* value = Json::find(object, field.key);
    if constexpr (isOptional<Member>) {
        if (!value || value->is_null())
            return true;
        record.*field.member = decode<typename Member::value_type>(*value, field.fromRaw);
        return (record.*field.member).has_value();
    } else {
        if (!value)
            return false;
        auto decoded = decode<Member>(*value, field.fromRaw);
        if (!decoded)
            return false;
        record.*field.member = std::move(*decoded);
        return true;
    }
}

template <class Record, class Member, class Reader>
void encodeInto(Json::Value& object, const Record& record, const Field<Record, Member, Reader>& field) {
    if constexpr (isOptional<Member>) {
        if (record.*field.member)
            object[field.key] = encode(*(record.*field.member));
    } else {
        object[field.key] = encode(record.*field.member);
    }
}

template <class Type>
std::size_t hash(const Type& value) {
    if constexpr (std::same_as<Type, Date>)
        return std::hash<double>{}(secondsSince1970(value));
    else
        return std::hash<Type>{}(value);
}

} // namespace fields

template <class Record>
Json::Value encodeRecord(const Record& record) {
    auto object = Json::Value::object();
    std::apply([&](const auto&... field) { (fields::encodeInto(object, record, field), ...); },
               fieldsOf(&record));
    return object;
}

template <class Record>
std::optional<Record> decodeRecord(const Json::Value& value) {
    if (!value.is_object())
        return std::nullopt;
    Record record;
    const bool isWhole =
        std::apply([&](const auto&... field) { return (fields::decodeInto(record, value, field) && ...); },
                   fieldsOf(&record));
    return isWhole ? std::optional(std::move(record)) : std::nullopt;
}

/// Over all fields, as equality is.
template <class Record>
[[nodiscard]] std::size_t hashRecord(const Record& record) {
    std::size_t result = 0;
    // The golden ratio's bits keep two equal members from cancelling out.
    const auto mix = [&](std::size_t part) {
        result ^= part + 0x9E3779B97F4A7C15u + (result << 6) + (result >> 2);
    };
    std::apply([&](const auto&... field) { (mix(fields::hash(record.*field.member)), ...); },
               fieldsOf(&record));
    return result;
}

} // namespace quorl
