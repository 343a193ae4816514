// The host's start with the heap in huge pages: a program started anew, or one whose user set
// the C library's heap setting, goes on as it is and keeps the user's setting.
#include "host/ProcessSetUp.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace {

/// An environment variable set for one test and put back afterwards.
class Env {
public:
    Env(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name))
            m_old = old, m_had = true;
        if (value != nullptr)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    ~Env() {
        if (m_had)
            ::setenv(m_name, m_old.c_str(), 1);
        else
            ::unsetenv(m_name);
    }

private:
    const char* m_name;
    std::string m_old;
    bool m_had = false;
};

} // namespace

TEST(ProcessSetUp, GoesOnAsItIsWhenStartedAnewOrWhenTheUserChoseTheHeap) {
    char name[] = "program";
    char* argv[] = {name, nullptr};
    {
        // Started anew already: never a second time, whatever the C library kept.
        const Env started("VORTA_HEAP_IN_HUGE_PAGES", "1");
        const Env tunables("GLIBC_TUNABLES", nullptr);
        vhost::HeapInHugePages(argv);
        EXPECT_EQ(std::getenv("GLIBC_TUNABLES"), nullptr);
    }
    {
        // The user's own choice of the heap stays, and so do the other settings.
        const Env started("VORTA_HEAP_IN_HUGE_PAGES", nullptr);
        const Env tunables("GLIBC_TUNABLES", "glibc.malloc.check=0:glibc.malloc.hugetlb=0");
        vhost::HeapInHugePages(argv);
        EXPECT_STREQ(std::getenv("GLIBC_TUNABLES"), "glibc.malloc.check=0:glibc.malloc.hugetlb=0");
        EXPECT_EQ(std::getenv("VORTA_HEAP_IN_HUGE_PAGES"), nullptr);
    }
    // Without arguments nothing is started.
    vhost::HeapInHugePages(nullptr);
}
