#include "platform/RuntimeError.h"

#include <utility>

namespace talvora {

const char* FaultDescription(Fault fault) {
    switch (fault) {
        case Fault::InvalidProcedureCall:
            return "Invalid procedure call or argument";
        case Fault::Overflow:
            return "Overflow";
        case Fault::OutOfMemory:
            return "Out of memory";
        case Fault::SubscriptOutOfRange:
            return "Subscript out of range";
        case Fault::TypeMismatch:
            return "Type mismatch";
        case Fault::InternalError:
            return "Internal error";
        case Fault::BadFileNameOrNumber:
            return "Bad file name or number";
        case Fault::FileNotFound:
            return "File not found";
        case Fault::BadFileMode:
            return "Bad file mode";
        case Fault::FileAlreadyOpen:
            return "File already open";
        case Fault::DeviceIOError:
            return "Device I/O error";
        case Fault::FileAlreadyExists:
            return "File already exists";
        case Fault::DiskFull:
            return "Disk full";
        case Fault::InputPastEndOfFile:
            return "Input past end of file";
        case Fault::BadRecordNumber:
            return "Bad record number";
        case Fault::TooManyFiles:
            return "Too many files";
        case Fault::PermissionDenied:
            return "Permission denied";
        case Fault::PathFileAccessError:
            return "Path/File access error";
        case Fault::PathNotFound:
            return "Path not found";
        case Fault::ObjectNotSet:
            return "Object variable or With block variable not set";
    }
    return "Application-defined or object-defined error";
}

RuntimeError::RuntimeError(int number, std::string description, std::string source, int lastDllError)
    : Number(number),
      Description(std::move(description)),
      Source(std::move(source)),
      LastDllError(lastDllError) {}

RuntimeError::RuntimeError(Fault fault, int lastDllError)
    : RuntimeError(static_cast<int>(fault), FaultDescription(fault), "Talvora", lastDllError) {}

}  // namespace talvora
