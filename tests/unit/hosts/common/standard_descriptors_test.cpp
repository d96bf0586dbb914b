#include <gtest/gtest.h>

#include <cerrno>

#include "hosts/common/standard_descriptors.h"
#include "tests/unit/hosts/common/child.h"

namespace {

TEST(StandardDescriptors, AreNeverTakenBySomethingElse) {
    Child child([](const Child&) {
        for (const int descriptor : {0, 1, 2}) close(descriptor);
        common::open_standard_descriptors();
        int ends[2];
        if (pipe(ends) != 0) return 1;
        return ends[0] > 2 && ends[1] > 2 ? 0 : 2;
    });
    EXPECT_EQ(0, child.wait());
}

TEST(StandardDescriptors, ThatWereClosedCanNeitherBeReadNorWritten) {
    Child child([](const Child&) {
        for (const int descriptor : {0, 1, 2}) close(descriptor);
        common::open_standard_descriptors();
        char byte = 0;
        if (read(0, &byte, 1) >= 0 || errno != EBADF) return 1;
        if (write(1, &byte, 1) >= 0 || errno != EBADF) return 2;
        if (write(2, &byte, 1) >= 0 || errno != EBADF) return 3;
        return 0;
    });
    EXPECT_EQ(0, child.wait());
}

TEST(StandardDescriptors, ThatAreOpenStayWhatTheyAre) {
    Child child([](const Child&) {
        int ends[2];
        if (pipe(ends) != 0 || dup2(ends[0], 0) != 0) return 1;
        close(1);
        common::open_standard_descriptors();
        char byte = 0;
        return write(ends[1], "x", 1) == 1 && read(0, &byte, 1) == 1 && byte == 'x' ? 0 : 2;
    });
    EXPECT_EQ(0, child.wait());
}

} // namespace
