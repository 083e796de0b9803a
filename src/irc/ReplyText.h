#pragma once
// The text of a reply that the server spreads over many lines. There is one for all kinds of replies, and a
// reply of one kind inside another spoils both; what each line costs does not grow with what is there.

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace talvora {

class ReplyText {
  public:
    // In bytes. What would go beyond it is refused: the operation returns False and changes nothing.
    static constexpr std::size_t Limit = 16 << 20;
    // Lines, or names: what many short ones need elsewhere is much more than their text.
    static constexpr std::size_t MostPieces = 128 << 10;

    bool empty() const { return text_.empty(); }
    const std::string& text() const { return text_; }
    void clear();

    [[nodiscard]] bool assign(std::string_view text);
    // One more line, set off by CR LF from what is there.
    [[nodiscard]] bool appendLine(std::string_view line);
    // A piece of a names list and a blank; then every double blank becomes one, and the ends are trimmed.
    [[nodiscard]] bool appendNames(std::string_view names);
    [[nodiscard]] bool replaceAll(std::string_view what, std::string_view by);

    // The pieces between the separators; none of an empty text. Empties this.
    std::vector<std::string> takeSplit(std::string_view separator);

  private:
    [[nodiscard]] bool hasRoom(std::size_t bytes, std::size_t pieces) const;
    void collapseBlanks();

    std::string text_;
    std::size_t pieces_ = 0;
    std::size_t clean_ = 0;  // up to here there is no double blank
};

}  // namespace talvora
