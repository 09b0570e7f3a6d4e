#include "corvane/csv_support/CSVReader.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace corvane {

namespace {

std::string readFileBytes(const std::filesystem::path& url) {
    auto fail = [&url](int err) {
        throw std::filesystem::filesystem_error("cannot read file", url,
                                                std::error_code(err, std::generic_category()));
    };
    const int fd = ::open(url.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0) fail(errno);
    std::string bytes;
    struct stat info {};
    if (::fstat(fd, &info) == 0 && S_ISREG(info.st_mode))
        bytes.reserve(static_cast<std::size_t>(info.st_size));
    // Read to the end rather than trusting a size: a folder opens but fails here with the system's
    // reason, and pipes have no size.
    char buffer[1 << 16];
    for (;;) {
        const ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n == 0) break;
        if (n < 0) {
            if (errno == EINTR) continue;
            const int err = errno;
            ::close(fd);
            fail(err);
        }
        bytes.append(buffer, static_cast<std::size_t>(n));
    }
    ::close(fd);
    return bytes;
}

} // namespace

template <CSVView View>
CSVReader<View>::CSVReader(std::string text, std::optional<CSVDelimiter> delimiter, bool loadColumns,
                           bool hasHeader, std::optional<std::size_t> rowLimit)
    : text_(std::move(text)), delimiter_(delimiter.value_or(CSVDelimiter::guessed(text_))),
      content_(text_, delimiter_, loadColumns, hasHeader, rowLimit) {}

template <CSVView View>
CSVReader<View> CSVReader<View>::fromString(std::string string, std::optional<CSVDelimiter> delimiter,
                                            bool loadColumns, bool hasHeader,
                                            std::optional<std::size_t> rowLimit) {
    return CSVReader(std::move(string), delimiter, loadColumns, hasHeader, rowLimit);
}

template <CSVView View>
CSVReader<View> CSVReader<View>::fromFile(const std::filesystem::path& url,
                                          std::optional<CSVDelimiter> delimiter, const TextEncoding& encoding,
                                          bool loadColumns, bool hasHeader) {
    std::optional<std::string> text = encoding.decode(readFileBytes(url));
    if (!text)
        throw std::filesystem::filesystem_error("file is not text in " + encoding.name(), url,
                                                std::make_error_code(std::errc::illegal_byte_sequence));
    static constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF"; // U+FEFF in UTF-8
    if (text->starts_with(byteOrderMark)) text->erase(0, byteOrderMark.size());
    return CSVReader(std::move(*text), delimiter, loadColumns, hasHeader, std::nullopt);
}

template class CSVReader<NamedCSVView>;
template class CSVReader<EnumeratedCSVView>;

} // namespace corvane
