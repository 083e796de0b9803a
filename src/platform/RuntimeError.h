#pragma once
// A run-time fault as the system knows it: a number, a description, a source and the last system error.
// It is thrown by the platform and by checked accessors, and never crosses the edge of a procedure that has a
// trap (common/Trap.h).

#include <exception>
#include <string>

namespace talvora {

// The classic run-time numbers that the system's faults carry.
enum class Fault : int {
    InvalidProcedureCall = 5,
    Overflow = 6,
    OutOfMemory = 7,
    SubscriptOutOfRange = 9,
    TypeMismatch = 13,
    InternalError = 51,
    BadFileNameOrNumber = 52,
    FileNotFound = 53,
    BadFileMode = 54,
    FileAlreadyOpen = 55,
    DeviceIOError = 57,
    FileAlreadyExists = 58,
    DiskFull = 61,
    InputPastEndOfFile = 62,
    BadRecordNumber = 63,
    TooManyFiles = 67,
    PermissionDenied = 70,
    PathFileAccessError = 75,
    PathNotFound = 76,
    ObjectNotSet = 91,
};

class RuntimeError : public std::exception {
  public:
    RuntimeError(int number, std::string description, std::string source = "Talvora", int lastDllError = 0);
    // A fault with the classic description of its number. `lastDllError` is the errno behind it, if any.
    explicit RuntimeError(Fault fault, int lastDllError = 0);

    const char* what() const noexcept override { return Description.c_str(); }

    int Number;
    std::string Description;
    std::string Source;
    int LastDllError;
};

// The classic description, such as "Subscript out of range".
const char* FaultDescription(Fault fault);

}  // namespace talvora
