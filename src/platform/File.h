#pragma once
// An open file of the program's folder. `Files::Open` makes it, its owner holds it, and it is closed with its
// owner or by `Files::CloseAll`. Text is bytes in code page 1253, a line ends in CR LF.
//
// Every operation on a closed file faults with 52, one that does not fit the mode with 54. A read that faults
// leaves the position where it was; a write that faults leaves the file as long as it was; so both can be
// done again. A line that is too long faults too, but is passed over up to the limit, so that a loop comes to
// its end.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

namespace talvora {

class Files;
struct OpenFile;

enum class FileMode {
    Input,   // reads an existing file
    Output,  // writes a new or emptied file
    Append,  // writes behind what is there
    Binary   // reads and writes at any position; a missing file is created
};

class File {
  public:
    static constexpr std::size_t LineLimit = std::size_t{1} << 20;    // bytes of one line
    static constexpr std::size_t WholeLimit = std::size_t{64} << 20;  // bytes of one `ReadAll` or `Get`

    File();  // closed
    File(File&& other) noexcept;
    File& operator=(File&& other) noexcept;
    ~File();

    bool IsOpen() const;
    // In bytes.
    std::int64_t Length() const;

    // The next line without its end, which may also be a lone CR or LF; 62 at the end of the file.
    std::string ReadLine();
    // The rest of the file.
    std::string ReadAll();
    bool AtEnd();
    // At most `count` bytes from `position`, counted from 1; fewer at the end of the file.
    std::string Get(std::int64_t position, std::size_t count);
    // The same into a place that has room for them; how many there were.
    std::size_t Get(std::int64_t position, char* to, std::size_t count) const;
    // A number that is another one after the content has changed, whoever did it.
    std::uint64_t Version() const;

    // Behind what was written: `text` and CR LF, or `bytes` alone.
    void WriteLine(std::string_view text);
    void Write(std::string_view bytes);
    // At `position`, counted from 1.
    void Put(std::int64_t position, std::string_view bytes);

    // When it returns, what was written survives lost power, and so does the name of a new file. A flush that
    // failed once can't be trusted again: it goes on to fault until the file is closed.
    void Flush();
    // The file is closed even if this faults. Closing a closed file does nothing.
    void Close();

  private:
    friend class Files;
    explicit File(std::unique_ptr<OpenFile> opened);

    OpenFile& opened() const;
    OpenFile& readable() const;
    OpenFile& writable() const;
    OpenFile& binary() const;

    std::unique_ptr<OpenFile> opened_;
};

}  // namespace talvora
