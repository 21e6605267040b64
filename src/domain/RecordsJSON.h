#pragma once

#include "base/Json.h"
#include "domain/Records.h"

#include <cstddef>
#include <functional>
#include <optional>

// The records' JSON form: an object whose keys are the names of the fields, optional ones left out when
// absent, enumerations as their raw strings, dates as seconds since 1970, UUIDs as upper-case text. And their
// hashes, over all fields as equality is. Thread: any.
namespace quorl {

[[nodiscard]] Json::Value toJSON(const ModelProfile& model);
[[nodiscard]] Json::Value toJSON(const Category& category);
[[nodiscard]] Json::Value toJSON(const QuorlRun& run);
[[nodiscard]] Json::Value toJSON(const QuorlBatch& batch);
[[nodiscard]] Json::Value toJSON(const ModelAnswer& answer);
[[nodiscard]] Json::Value toJSON(const DatasetExample& example);

/// For the six records above. Nothing if a field that is not optional is missing, or any is of another type
/// or holds an unknown raw string.
template <class Record>
[[nodiscard]] std::optional<Record> fromJSON(const Json::Value& value);

template <>
std::optional<ModelProfile> fromJSON(const Json::Value& value);
template <>
std::optional<Category> fromJSON(const Json::Value& value);
template <>
std::optional<QuorlRun> fromJSON(const Json::Value& value);
template <>
std::optional<QuorlBatch> fromJSON(const Json::Value& value);
template <>
std::optional<ModelAnswer> fromJSON(const Json::Value& value);
template <>
std::optional<DatasetExample> fromJSON(const Json::Value& value);

} // namespace quorl

template <>
struct std::hash<quorl::ModelProfile> {
    std::size_t operator()(const quorl::ModelProfile& model) const;
};
template <>
struct std::hash<quorl::Category> {
    std::size_t operator()(const quorl::Category& category) const;
};
template <>
struct std::hash<quorl::QuorlRun> {
    std::size_t operator()(const quorl::QuorlRun& run) const;
};
template <>
struct std::hash<quorl::QuorlBatch> {
    std::size_t operator()(const quorl::QuorlBatch& batch) const;
};
template <>
struct std::hash<quorl::ModelAnswer> {
    std::size_t operator()(const quorl::ModelAnswer& answer) const;
};
template <>
struct std::hash<quorl::DatasetExample> {
    std::size_t operator()(const quorl::DatasetExample& example) const;
};
