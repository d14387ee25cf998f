// SPDX-License-Identifier: MIT
// The public header of the vendor entry points against the finished library.
#include "state/state_test.h"

#include <cstdio>
#include <fstream>
#include <iterator>
#include <regex>
#include <set>

// In the C files of this test.
extern "C" void callVendorFromC(void);
extern "C" int countVendorPrototypes(void);
extern "C" int vendorTypesOnly(void);

namespace {

std::set<std::string> exportedFunctions()
{
    std::set<std::string> names;
    std::FILE *pipe = popen("nm -D --defined-only '" LIBRARY "'", "r");
    if (!pipe) return names;
    std::array<char, 4096> line;
    while (std::fgets(line.data(), line.size(), pipe)) {
        const std::string text = line.data();
        if (text.find(" T ") != std::string::npos)
            names.insert(text.substr(text.rfind(' ') + 1, text.size() - text.rfind(' ') - 2));
    }
    pclose(pipe);
    return names;
}

std::set<std::string> matches(const char *pattern)
{
    std::ifstream file(HEADER);
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    const std::regex form(pattern);
    std::set<std::string> names;
    for (auto match = std::sregex_iterator(text.begin(), text.end(), form); match != std::sregex_iterator(); ++match)
        names.insert((*match)[1].str());
    return names;
}

std::set<std::string> listedVendorNames()
{
    return {
#define EXPORT(name) #name,
#include "ext/vendor_exports.def"
    };
}

class VendorHeader : public StateTest {};

} // namespace

TEST_F(VendorHeader, DeclaresExactlyTheVendorEntryPoints)
{
    const std::set<std::string> declared = matches("GL_API \\w+ GL_APIENTRY (gl\\w+) \\(");
    EXPECT_EQ(declared, listedVendorNames());
    EXPECT_EQ(declared.size(), 26u);
    EXPECT_EQ(matches("GL_APIENTRYP (PFN\\w+PROC)\\)").size(), 26u);
    EXPECT_EQ(countVendorPrototypes(), 26);
}

TEST_F(VendorHeader, EveryDeclaredNameIsExported)
{
    const std::set<std::string> exported = exportedFunctions();
    for (const std::string &name : matches("GL_API \\w+ GL_APIENTRY (gl\\w+) \\("))
        EXPECT_EQ(exported.count(name), 1u) << name;
}

TEST_F(VendorHeader, WorksFromC)
{
    callVendorFromC();
    EXPECT_EQ(ctx->vendor.fogCoord, 3.5f);
    EXPECT_EQ(ctx->vendor.alphaFactor, 0.25f);
    EXPECT_EQ(vendorTypesOnly(), 3);
}
