#pragma once
// The error trap of a procedure. A fault inside never leaves it: the reporter asks, and Abort leaves the
// procedure, Retry runs the failing step again, Ignore goes on behind it. The caller is not told.
//
//     trapped(globError, "MailDump", [&](Trap& step) {
//         step([&] { file.WriteLine(text); });
//         if (step.test([&] { return file.AtEnd(); })) ...
//     });
//
// A step is written where the system names a fault or calls the platform: small, and without side effects
// before the point of failure, so that doing it again is safe. A fault outside any step leaves the procedure,
// whatever the answer.

#include <string>
#include <utility>

#include "common/GlobError.h"

namespace talvora {

class Trap {
  public:
    Trap(GlobError& reporter, const char* procedure) : reporter_(reporter), procedure_(procedure) {}

    // Runs `statement`. True if it ran to its end, False after Ignore.
    template <class Statement>
    bool operator()(Statement&& statement) {
        for (;;) {
            try {
                statement();
                return true;
            } catch (const Left&) {
                throw;
            } catch (...) {
                if (ask() == Answer::Ignore) return false;
            }
        }
    }

    // A condition: what it says, or False after Ignore (the branch is not taken).
    template <class Condition>
    bool test(Condition&& condition) {
        bool result = false;
        return (*this)([&] { result = condition(); }) && result;
    }

    // An expression: its value, or `before` after Ignore.
    template <class Value, class Expression>
    Value value(Value before, Expression&& expression) {
        (*this)([&] { before = expression(); });
        return before;
    }

  private:
    template <class Body>
    friend void trapped(GlobError& reporter, const char* procedure, Body&& body);

    // Thrown to leave the procedure after Abort; caught by `trapped` alone.
    struct Left {
        const Trap* trap;
    };

    // Abort leaves the procedure by an exception; Retry and Ignore are returned.
    Answer ask() {
        const Answer answer = reporter_.Report(CurrentFault(), procedure_);
        if (answer != Answer::Retry && answer != Answer::Ignore) throw Left{this};
        return answer;
    }

    GlobError& reporter_;
    const char* procedure_;
};

template <class Body>
void trapped(GlobError& reporter, const char* procedure, Body&& body) {
    Trap trap(reporter, procedure);
    try {
        std::forward<Body>(body)(trap);
    } catch (const Trap::Left& left) {
        if (left.trap != &trap) throw;
    } catch (...) {
        reporter.Report(CurrentFault(), procedure);
    }
}

}  // namespace talvora
