#include "platform/DiskDriver.h"

#include <cerrno>

namespace talvora {

RuntimeError DiskFault(int errorNumber) {
    const auto fault = [errorNumber](Fault number) { return RuntimeError(number, errorNumber); };
    switch (errorNumber) {
        case ENOENT:
            return fault(Fault::FileNotFound);
        case ENOTDIR:
            return fault(Fault::PathNotFound);
        case EEXIST:
            return fault(Fault::FileAlreadyExists);
        case EACCES:
        case EPERM:
        case EROFS:
        case EBUSY:
        case ETXTBSY:
            return fault(Fault::PermissionDenied);
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return fault(Fault::DiskFull);
        case EIO:
        case ENXIO:
        case ENODEV:
        case ESTALE:
            return fault(Fault::DeviceIOError);
        case EMFILE:
        case ENFILE:
            return fault(Fault::TooManyFiles);
        case EBADF:
        case EINVAL:
        case EILSEQ:
        case ENAMETOOLONG:
            return fault(Fault::BadFileNameOrNumber);
        case ENOMEM:
            return fault(Fault::OutOfMemory);
        default:
            return fault(Fault::PathFileAccessError);
    }
}

}  // namespace talvora
