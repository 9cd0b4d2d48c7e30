#include "platform/linux/process/code_pages.h"

#include <sys/mman.h>
#include <unistd.h>

#include <fcntl.h>
#include <gtest/gtest.h>

namespace corvane::platform {
namespace {

/// A page of a system file, mapped as code; `written` changes a byte of it first, as a compiler of
/// scripts or a debugger does.
class MappedCode
{
public:
    explicit MappedCode(bool written)
    {
        const int file = open("/usr/bin/env", O_RDONLY | O_CLOEXEC);
        m_page = static_cast<unsigned char *>(
            mmap(nullptr, size(), PROT_READ | PROT_WRITE, MAP_PRIVATE, file, 0));
        close(file);
        if (written) {
            m_page[0] = 0x42;
        }
        mprotect(m_page, size(), PROT_READ | PROT_EXEC);
    }
    ~MappedCode() { munmap(m_page, size()); }
    MappedCode(const MappedCode &) = delete;
    MappedCode &operator=(const MappedCode &) = delete;

    [[nodiscard]] unsigned char firstByte() const
    {
        return *const_cast<volatile unsigned char *>(m_page);
    }

private:
    static std::size_t size() { return static_cast<std::size_t>(sysconf(_SC_PAGESIZE)); }

    unsigned char *m_page = nullptr;
};

TEST(CodePages, KeepTheirContentsWhenTheyAreReleased)
{
    const MappedCode untouched(false);
    const MappedCode changed(true);
    releaseCodePages();
    EXPECT_EQ(untouched.firstByte(), 0x7f);
    EXPECT_EQ(changed.firstByte(), 0x42);
}

} // namespace
} // namespace corvane::platform
