#include "mail/frmSendMail.h"

#include <utility>

#include "mail/MailFile.h"
#include "platform/Files.h"
#include "platform/Text.h"

namespace talvora {

namespace {

constexpr std::string_view RTFNotice =
    "Information: Use this option ONLY when sending a small text! Mails are transfered using a low-bandwidth "
    "protocol, which means that data are transfered with about 100 Bytes per second. If you enable RTF "
    "message "
    "format you will extend the size of it, and delay even more the transmittion/reception";

constexpr std::size_t SecondsAPiece = 2;

}  // namespace

frmSendMail::frmSendMail(const MailSurroundings& around, const ComposerServices& services)
    : tmrDraft(around.ThePlatform, Ending, 2000),
      tmrEstimate(around.ThePlatform, Ending, 200),
      platform_(around.ThePlatform),
      globError_(around.Reporter),
      files_(around.ThePlatform.ProgramFiles),
      services_(services) {
    Caption = "New message";
    mnuDiscard.Caption = "&Discard";
    makeToolbar();
    connectHands();
    estimate();
}

void frmSendMail::makeToolbar() {
    using enum ButtonStyle;
    Toolbar1.Add(Press, "Send").Enabled = false;
    Toolbar1.Add(Separator);
    Toolbar1.Add(Toggle, "Bold");
    Toolbar1.Add(Toggle, "Italic");
    Toolbar1.Add(Toggle, "Underline");
    Toolbar1.Add(Separator);
    Toolbar1.Add(Press, "Font");
    Toolbar1.Add(Separator);
    Toolbar1.Add(Toggle, "Priority", "High Priority");
    Toolbar1.Add(Toggle, "RTF", "Mail has an RTF format");
    Toolbar1.Add(Toggle, "Expiration");
    Toolbar1.Add(Separator);
    Toolbar1.Add(Press, "Emoticons");
}

void frmSendMail::connectHands() {
    on_ += Toolbar1.ButtonClick.connect([this](ToolbarButton& button) { Toolbar1_ButtonClick(button); });
    on_ += RichTextBox1.SelChange.connect([this] { RichTextBox1_SelChange(); });
    on_ += RichTextBox1.Change.connect([this] { RichTextBox1_Change(); });
    on_ += Text1.Text.Changed.connect([this](const std::string&) {
        touched();
        suggest();
    });
    on_ += Text2.Text.Changed.connect([this](const std::string&) { touched(); });
    on_ += Image1.Click.connect([this] { services_.SelectUser.Load().Display(*this); });
    on_ += mnuDiscard.Click.connect([this] {
        dropDraft();
        Unload();
    });
    on_ += tmrDraft.Tick.connect([this] { saveDraft(); });
    on_ += tmrEstimate.Tick.connect([this] { estimate(); });
}

// ---- Opening

void frmSendMail::StartSend(const std::string& To, const std::string& Body, bool IsRTF,
                            const std::string& Subject) {
    trapped(globError_, "StartSend", [&](Trap& step) {
        filling_ = true;
        Text1.Text = TruncNick(To);
        if (!Body.empty()) step([&] { IsRTF ? RichTextBox1.SetTextRTF(Body) : RichTextBox1.SetText(Body); });
        Text2.Text = Subject;
        filling_ = false;
        RichTextBox1.SetSelStart(0);
        Show();
    });
}

bool frmSendMail::StartDraft(const std::string& fileName) {
    MailDraft draft;
    if (!services_.Drafts.Load(fileName, draft)) {
        Unload();
        return false;
    }
    services_.Drafts.Take(fileName);
    draft_ = fileName;
    filling_ = true;
    Text1.Text = draft.To;
    Text2.Text = draft.Subject;
    RichTextBox1.SetTextRTF(draft.RTF);
    Toolbar1.Buttons(ComposerButton::Priority).Value = draft.Urgent;
    Toolbar1.Buttons(ComposerButton::RTF).Value = draft.IsRTF;
    Toolbar1.Buttons(ComposerButton::Expiration).Value = draft.ExpireHours > 0;
    ExpireHours = draft.ExpireHours;
    filling_ = false;
    Show();
    return true;
}

// ---- Writing

void frmSendMail::Toolbar1_ButtonClick(ToolbarButton& button) {
    trapped(globError_, "Toolbar1_ButtonClick", [&](Trap& step) {
        switch (button.Index) {
            case ComposerButton::Send:
                return send();
            case ComposerButton::Bold:
                return RichTextBox1.SetSelBold(button.Value);
            case ComposerButton::Italic:
                return RichTextBox1.SetSelItalic(button.Value);
            case ComposerButton::Underline:
                return RichTextBox1.SetSelUnderline(button.Value);
            case ComposerButton::Font:
                return chooseFont(step);
            case ComposerButton::Emoticons:
                return services_.Picker.Load().Display(*this, Left, Top);
            case ComposerButton::Expiration:
                return askExpiry();
            case ComposerButton::RTF:
                if (button.Value) tell(std::string(RTFNotice), "RTF Format", MessageIcon::Information);
                estimate();
                [[fallthrough]];
            default:
                touched();
        }
    });
}

void frmSendMail::RichTextBox1_SelChange() {
    Toolbar1.Buttons(ComposerButton::Bold).Value = RichTextBox1.SelBold().value_or(false);
    Toolbar1.Buttons(ComposerButton::Italic).Value = RichTextBox1.SelItalic().value_or(false);
    Toolbar1.Buttons(ComposerButton::Underline).Value = RichTextBox1.SelUnderline().value_or(false);
}

bool frmSendMail::isEmpty() const {
    return RichTextBox1.Document().TextLength() == 0;
}

void frmSendMail::RichTextBox1_Change() {
    Toolbar1.Buttons(ComposerButton::Send).Enabled = !isEmpty();
    tmrEstimate.Enabled = true;
    touched();
}

FontChoice frmSendMail::fontOfSelection() const {
    return {.Name = RichTextBox1.SelFontName().value_or(""),
            .Size = RichTextBox1.SelFontSize().value_or(0),
            .Bold = RichTextBox1.SelBold().value_or(false),
            .Italic = RichTextBox1.SelItalic().value_or(false),
            .Underline = RichTextBox1.SelUnderline().value_or(false),
            .StrikeThru = RichTextBox1.SelStrikeThru().value_or(false),
            .Color = RichTextBox1.SelColor().value_or(0)};
}

void frmSendMail::chooseFont(Trap& step) {
    const std::optional<FontChoice> font = platform_.Asking.Ask(FontBox{"Font", fontOfSelection()});
    if (font && !IsUnloaded()) step([&] { takeFont(*font); });
}

void frmSendMail::takeFont(const FontChoice& font) {
    RichTextBox1.SetSelFontName(font.Name);
    RichTextBox1.SetSelBold(font.Bold);
    RichTextBox1.SetSelColor(font.Color);
    if (font.Size > 0) RichTextBox1.SetSelFontSize(font.Size);
    RichTextBox1.SetSelItalic(font.Italic);
    RichTextBox1.SetSelUnderline(font.Underline);
    RichTextBox1.SetSelStrikeThru(font.StrikeThru);
}

// As its picture where the mail can carry one, and else as its code.
void frmSendMail::Emotion(const std::string& Code) {
    trapped(globError_, "Emotion", [&](Trap& step) {
        if (Code.empty()) return;
        if (!pressed(ComposerButton::RTF)) return RichTextBox1.SetSelText(Code);
        step([&] {
            RichTextBox1.SetSelRTF("{\\rtf1\\ansi\\ansicpg1253 " + services_.Emotions.ReplaceEmotion(Code) +
                                   "}");
        });
    });
}

// ---- Recipients

// A name that stands inside a longer one counts as present.
void frmSendMail::UserClick(const std::string& Nick) {
    trapped(globError_, "UserClick", [&](Trap&) {
        const std::string nick = Trim(Nick);
        const std::string& present = Text1.Text;
        if (nick.empty() || InStr(present, nick, Compare::Text) != 0) return;
        Text1.Text = present.empty() ? nick : present + "; " + nick;
    });
}

std::vector<std::string> frmSendMail::recipients() const {
    std::vector<std::string> names;
    for (const std::string& part : Split(Text1.Text.get(), ";")) {
        std::string name = Trim(part);
        if (!name.empty()) names.push_back(std::move(name));
    }
    return names;
}

void frmSendMail::suggest() {
    if (filling_) return;
    const std::string& text = Text1.Text;
    const std::size_t last = text.rfind(';');
    Suggestions =
        services_.Recipients.Matches(Trim(std::string_view(text).substr(last == text.npos ? 0 : last + 1)));
}

void frmSendMail::Complete(const std::string& name) {
    const std::string& text = Text1.Text;
    const std::size_t last = text.rfind(';');
    Text1.Text = (last == text.npos ? std::string() : text.substr(0, last + 1) + " ") + name;
    Text1.SelStart = Text1.Text.get().size();
    Suggestions = std::vector<std::string>();
}

// ---- Expiry

// A dialog that another composer has open is closed for this one.
void frmSendMail::askExpiry() {
    if (frmExpire* open = services_.Expire.Get()) open->Unload();
    frmExpire& dialog = services_.Expire.Load();
    expire_.clear();
    expire_ += dialog.Closed.connect([this, &dialog] { takeExpiry(dialog); });
    expire_ += dialog.Unloaded.connect(
        [this] { Toolbar1.Buttons(ComposerButton::Expiration).Value = ExpireHours > 0; });
    dialog.Display(ExpireHours);
}

void frmSendMail::takeExpiry(frmExpire& dialog) {
    ExpireHours = dialog.Hours;
    dialog.Unload();
    touched();
}

// ---- Sending

void frmSendMail::tell(const std::string& text, const std::string& title, MessageIcon icon) {
    MessageBox box;
    box.Text = text;
    box.Title = title;
    box.Icon = icon;
    platform_.Asking.Ask(box);
}

// A recipient whose mail could not be written stays in the box, and so does the text.
void frmSendMail::send() {
    if (Text1.Text.get().empty()) {
        return tell("Please select at least one user to send the message to!", "Error",
                    MessageIcon::Exclamation);
    }
    if (Text2.Text.get().empty()) {
        return tell("Message MUST have a subject!", "Error", MessageIcon::Exclamation);
    }
    std::vector<std::string> failed;
    const std::vector<std::string> names = recipients();
    for (const std::string& name : names) {
        if (!Generate(name)) failed.push_back(name);
    }
    if (!failed.empty()) {
        Text1.Text = Join(failed, "; ");
        return;
    }
    trapped(globError_, "Toolbar1_ButtonClick",
            [&](Trap& step) { step([&] { services_.Recipients.Remember(names); }); });
    dropDraft();
    Unload();
}

std::string frmSendMail::mailText() {
    return pressed(ComposerButton::RTF) ? RichTextBox1.TextRTF() : RichTextBox1.Text();
}

bool frmSendMail::Generate(const std::string& Nick) {
    bool written = false;
    trapped(globError_, "Generate", [&](Trap& step) {
        MailFile::Letter letter{.To = TruncNick(Nick),
                                .Subject = Text2.Text,
                                .Text = mailText(),
                                .Urgent = pressed(ComposerButton::Priority),
                                .IsRTF = pressed(ComposerButton::RTF),
                                .ExpireHours = ExpireHours};
        std::string name;
        if (!step([&] { name = MailFile::OutgoingName(services_.Manager.NextSendMailID()); })) return;
        written = step([&] { files_.Rewrite(MailFile::PathOf(name), MailFile::OutgoingFile(letter)); });
        if (written) services_.Manager.SendMail(name);
    });
    return written;
}

std::string frmSendMail::EstimateText(std::size_t pieces) {
    if (pieces == 0) return {};
    if (pieces > MostPieces) {
        return CStr(pieces) + " lines: too long to be sent, " + CStr(MostPieces) + " lines are the most";
    }
    const std::string seconds = CStr(pieces * SecondsAPiece);
    return CStr(pieces) + (pieces == 1 ? " line" : " lines") + ", about " + seconds + " seconds";
}

void frmSendMail::estimate() {
    tmrEstimate.Enabled = false;
    lblEstimate.Caption =
        EstimateText(isEmpty() ? 0 : MailFile::PieceCount(mailText(), pressed(ComposerButton::RTF)));
}

// ---- The draft

void frmSendMail::touched() {
    if (filling_) return;
    unsaved_ = true;
    tmrDraft.Enabled = true;
}

void frmSendMail::saveDraft() {
    tmrDraft.Enabled = false;
    unsaved_ = false;
    if (isEmpty() && Text2.Text.get().empty()) return dropDraft();
    services_.Drafts.Save(draft_, {.To = Text1.Text,
                                   .Subject = Text2.Text,
                                   .RTF = RichTextBox1.TextRTF(),
                                   .Urgent = pressed(ComposerButton::Priority),
                                   .IsRTF = pressed(ComposerButton::RTF),
                                   .ExpireHours = ExpireHours});
}

void frmSendMail::dropDraft() {
    tmrDraft.Enabled = false;
    unsaved_ = false;
    if (!draft_.empty()) services_.Drafts.Remove(std::exchange(draft_, {}));
}

void frmSendMail::Form_Unload() {
    expire_.clear();
    if (unsaved_) saveDraft();
    if (!draft_.empty()) services_.Drafts.Release(draft_);
}

}  // namespace talvora
