// The library as a program meets it at run time: opened by name, closed, opened again.
#include <dlfcn.h>
#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <vector>

#include "zeps.h"

namespace {

std::vector<std::string> allExports() {
    std::vector<std::string> names = {
#define ZEP_EXPORT(name) #name,
#include "core/exports.def"
    };
    std::ifstream list(MOZEP_CORE_EXPORTS);
    for (std::string line; std::getline(list, line);)
        if (!line.empty() && line[0] != '#') names.push_back(line);
    return names;
}

class Loading : public ::testing::TestWithParam<int> {};

TEST_P(Loading, FindsEveryExport) {
    void* library = dlopen(MOZEP_LIBRARY, GetParam());
    ASSERT_NE(library, nullptr) << dlerror();
    for (const std::string& name : allExports())
        EXPECT_NE(dlsym(library, name.c_str()), nullptr) << name;
    EXPECT_EQ(dlsym(library, "zepSelectVariantForCpu"), nullptr)
        << "internal functions stay inside";
    EXPECT_EQ(dlsym(library, "zep_variantIndex"), nullptr);
    EXPECT_EQ(dlclose(library), 0);
}

TEST_P(Loading, SelectsTheSameVariantEachTime) {
    std::string first;
    for (int round = 0; round < 3; ++round) {
        void* library = dlopen(MOZEP_LIBRARY, GetParam());
        ASSERT_NE(library, nullptr) << dlerror();
        const auto version =
            reinterpret_cast<decltype(&zepsGetLibVersion)>(dlsym(library, "zepsGetLibVersion"));
        const auto add = reinterpret_cast<decltype(&zepsAdd_32f)>(dlsym(library, "zepsAdd_32f"));
        ASSERT_TRUE(version != nullptr && add != nullptr);
        if (round == 0) first = version()->libName;
        EXPECT_EQ(version()->libName, first);
        const Zep32f a[3] = {1, 2, 3}, b[3] = {10, 20, 30};
        Zep32f sum[3];
        EXPECT_EQ(add(a, b, sum, 3), zepStsNoErr);
        EXPECT_EQ(sum[2], 33);
        EXPECT_EQ(dlclose(library), 0);
        EXPECT_EQ(dlopen(MOZEP_LIBRARY, RTLD_NOW | RTLD_NOLOAD), nullptr)
            << "still loaded after dlclose";
    }
}

INSTANTIATE_TEST_SUITE_P(Binding, Loading,
                         ::testing::Values(RTLD_NOW | RTLD_LOCAL, RTLD_LAZY | RTLD_LOCAL),
                         [](const auto& binding) {
                             return (binding.param & RTLD_NOW) != 0 ? "Now" : "Lazy";
                         });

}  // namespace
