#include "common/GlobError.h"

namespace talvora {

GlobError::GlobError(Platform& platform) : platform_(platform) {
    platform_.Guarded.OnStray = [this](const RuntimeError& error, const std::string& where) {
        Report(error, where);
    };
}

GlobError::~GlobError() {
    platform_.Guarded.OnStray = nullptr;
}

Answer GlobError::Report(const RuntimeError& error, const std::string& procedure) {
    if (open_ != nullptr) {
        open_->Suppressed = open_->Suppressed + 1;
        return Answer::Abort;
    }
    MessageBox box;
    box.Text = ReportText(error, procedure);
    box.Title = "Critical error";
    box.Choices = Buttons::AbortRetryIgnore;
    box.Icon = MessageIcon::Critical;
    struct Standing {
        MessageBox*& open;
        ~Standing() { open = nullptr; }
    } standing{open_};
    open_ = &box;
    return platform_.Asking.Ask(box);
}

std::string GlobError::ReportText(const RuntimeError& error, const std::string& procedure) {
    const std::string eol = "\r\n";
    return "WARNING! A critical error has occured on Talvora core! You can continue but the system might not "
           "work "
           "properly!" +
           eol + "Please contact Brindle or Fennmark, providing the follow error information:" + eol + eol +
           "Description: " + error.Description + eol + "Number:" + std::to_string(error.Number) + eol +
           "Last DllError:" + std::to_string(error.LastDllError) + eol + "Source: " + error.Source + eol +
           "Function:" + procedure + eol + eol + "What to you want to do?";
}

}  // namespace talvora
