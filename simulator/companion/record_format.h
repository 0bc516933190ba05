#pragma once

/// What a record's folder holds, as docs/RECORDS.md describes it.
namespace companion::record_format {

/// A record of another version is not read.
inline constexpr int version = 1;

inline constexpr const char* linesFile = "record.jsonl";
inline constexpr const char* worldFile = "world";
inline constexpr const char* endFile = "end.world";  // the state at the end, unless it has no text
inline constexpr const char* picturesFolder = "pictures";

}  // namespace companion::record_format
