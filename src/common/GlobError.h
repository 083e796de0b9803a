#pragma once
// The one reporter of run-time faults. It asks the user for one of three answers and returns it.
//
// While a report stands on the screen, faults that nested events raise are not stacked on top of it: they are
// answered as Abort and counted in the open report.

#include <string>

#include "platform/Platform.h"
#include "platform/RuntimeError.h"

namespace talvora {

class GlobError {
  public:
    // Also becomes the receiver of what strays into the platform's last guard.
    explicit GlobError(Platform& platform);
    ~GlobError();
    GlobError(const GlobError&) = delete;
    GlobError& operator=(const GlobError&) = delete;

    // `procedure` is the name of the procedure whose trap caught the fault. Returns Abort, Retry or Ignore.
    Answer Report(const RuntimeError& error, const std::string& procedure);

    // The exact text of a report, lines ended by CR LF.
    static std::string ReportText(const RuntimeError& error, const std::string& procedure);

  private:
    Platform& platform_;
    MessageBox* open_ = nullptr;
};

}  // namespace talvora
