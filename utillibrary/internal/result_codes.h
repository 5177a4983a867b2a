#pragma once

// The result codes and levels of every report, written once. The codes are in the style of COM.
namespace com::halvorin::internal {

inline constexpr unsigned int INVALID_ARGUMENT = 0x80070057;
inline constexpr unsigned int GENERAL_FAILURE = 0x80004005;
inline constexpr unsigned int LIBRARY_NOT_LOADED = 0xECE99F6E;
inline constexpr unsigned int SYMBOL_NOT_FOUND = 0xECE99F6F;
inline constexpr unsigned int NO_CODE = 0;

inline constexpr int LEVEL_ERROR = 3;
inline constexpr int LEVEL_NOTICE = 7;

}  // namespace com::halvorin::internal
