#include "chat/frmEmoticons.h"

#include "common/Trap.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view CellHead =
    "{\\rtf1\\ansi\\ansicpg1253\\deff0\\deflang1032{\\fonttbl{\\f0\\fnil\\fcharset161 Tahoma;}}\r\n"
    "\\viewkind4\\uc1\\pard\\f0\\fs17 ";
constexpr std::string_view CellTail = "\r\n \\par}";

}  // namespace

frmEmoticons::frmEmoticons(Platform& platform, GlobError& globError, const modEmotions& emotions)
    : Timer1(platform, Ending, 1, true), platform_(platform), globError_(globError), emotions_(emotions) {
    Timer1.Rest();
    for (int i = 0; i < Cells; ++i) {
        on_ += Ico.Load(i).MouseUp.connect([this, i](MouseButton) { Ico_MouseUp(i); });
    }
    on_ += VScroll1.Change.connect([this] { turnPage(); });
    on_ += VScroll1.Scroll.connect([this] { turnPage(); });
    on_ += Timer1.Tick.connect([this] { Timer1_Timer(); });
    on_ += platform_.Screen.ForegroundChanged.connect([this] {
        if (loaded_) Timer1.Wake();
    });
}

void frmEmoticons::Display(EmotionTarget& FormOwner, int X, int Y) {
    trapped(globError_, "Display", [&](Trap&) {
        FormOwner_ = &FormOwner;
        ownerEnds_ = FormOwner.Ended.connect([this] { FormOwner_ = nullptr; });
        if (!loaded_) Form_Load();
        loaded_ = true;
        Left = X;
        Top = Y;
        Show();
        Timer1.Enabled = true;
    });
}

void frmEmoticons::Form_Load() {
    trapped(globError_, "Form_Load", [&](Trap& step) {
        VScroll1.Min = 0;
        step([&] { VScroll1.Max = CInt(static_cast<double>(emotions_.EmotionCount()) / Cells); });
        VScroll1.Enabled = VScroll1.Max >= 2;
        VScroll1.Value = 0;
        EmotionPage = 0;
        Reload();
    });
}

void frmEmoticons::Reload() {
    trapped(globError_, "Reload", [&](Trap& step) {
        const auto first = static_cast<std::size_t>(EmotionPage) * Cells;
        for (int i = 0; i < Cells; ++i) {
            step([&] { showEntry(Ico(i), first + static_cast<std::size_t>(i)); });
        }
    });
}

void frmEmoticons::showEntry(Cell& cell, std::size_t number) {
    const auto& entries = emotions_.EmotionList();
    cell.SetText("");
    cell.Tag = "";
    if (number >= entries.size()) return;
    const auto fields = Split(entries[number], std::string(1, modEmotions::Separator), 2);
    std::string rtf(CellHead);
    rtf += Replace(elementOf(fields, 1), modEmotions::LineEndMark, "\r\n");
    cell.SetTextRTF(rtf += CellTail);
    cell.Tag = fields[0];
}

void frmEmoticons::turnPage() {
    EmotionPage = CInt(VScroll1.Value.get());
    Reload();
}

void frmEmoticons::Ico_MouseUp(int index) {
    const std::string code = Ico(index).Tag;
    if (FormOwner_ != nullptr) FormOwner_->Emotion(code);
    Unload();
}

// A desktop takes its time to bring a window to the front, and nothing is in front meanwhile: that is not yet
// a user who has gone elsewhere.
void frmEmoticons::Timer1_Timer() {
    Timer1.Rest();
    const Form* front = platform_.Screen.ForegroundWindow();
    wasInFront_ = wasInFront_ || front == this;
    if (front == this || (front == nullptr && !wasInFront_)) return;
    Unload();
}

void frmEmoticons::Form_Unload() {
    ownerEnds_.disconnect();
    FormOwner_ = nullptr;
}

}  // namespace talvora
