#pragma once

// Every report that the library gives to the log hook is made of these constants: a component, a
// level, a message and a code. The codes are in the style of COM.
namespace com::halvorin::internal {

// ---- codes

inline constexpr unsigned int SUCCESS = 0;
inline constexpr unsigned int NO_CODE = 0;
inline constexpr unsigned int INVALID_ARGUMENT = 0x80070057;
inline constexpr unsigned int GENERAL_FAILURE = 0x80004005;
inline constexpr unsigned int LIBRARY_NOT_LOADED = 0xECE99F6E;
inline constexpr unsigned int SYMBOL_NOT_FOUND = 0xECE99F6F;

// ---- levels

inline constexpr int LEVEL_ERROR = 3;
inline constexpr int LEVEL_NOTICE = 7;

// ---- components: the class or the source file, "::" and the function

inline constexpr char const* BYTESTREAM_COPY = "ByteStream::copy";
inline constexpr char const* LIBRARY_OPEN = "Library::open";
inline constexpr char const* LIBRARY_CLOSE = "Library::close";
inline constexpr char const* LIBRARY_PROC_ADDRESS = "Library::procAddress";
inline constexpr char const* NVP_AVERAGE = "StringNVP::averageNVP";
inline constexpr char const* VARIANT_CONVERT_TO_STRING = "Variant::convertToString";

// ---- messages
// KEPT(reports-use-other-names): they do not use the names of the parameters.
// KEPT(reports-end-in-a-space): some end in a space. A host may compare the whole message.

inline constexpr char const* NULL_BYTES = "NULL == V";
inline constexpr char const* ZERO_SIZE = "0 == Sz";
inline constexpr char const* PAST_SOURCE_END = "SrcStart+Num > Src.size()";
inline constexpr char const* EMPTY_LIBRARY_NAME = "Invalid argument (NULL == Name). ";
inline constexpr char const* ALREADY_OPEN = "Must call Close because library is already open";
inline constexpr char const* LOAD_FAILED = "Error calling dlopen. ";
inline constexpr char const* LOAD_FAILED_REASON = "Error calling dlopen. Reason: ";
inline constexpr char const* NOT_OPEN_FOR_SYMBOL = "Library is not open. ";
inline constexpr char const* EMPTY_SYMBOL_NAME = "NULL == EntryPoint. ";
inline constexpr char const* SYMBOL_LOOKUP_FAILED = "Error calling dlsym. ";
inline constexpr char const* NOT_OPEN_FOR_CLOSE = "Library is not open";
inline constexpr char const* INVALID_DURATION = "Invalid duration";
inline constexpr char const* UNKNOWN_TYPE = "Cannot convert unknown type";

}  // namespace com::halvorin::internal
