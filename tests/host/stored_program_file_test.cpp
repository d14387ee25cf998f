// SPDX-License-Identifier: MIT
// The format of stored programs: only what was written whole, for the same key, is ever read.
#include "host/gles2/stored_program_file.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace {

const std::string kKey("driver\0text\0", 12);
const ProgramBinary kBinary = {.format = 0x875F, .bytes = std::string("a program\0with a zero", 21)};

bool isRead(const std::string &content, const std::string &key = kKey)
{
    ProgramBinary binary = {.format = 7, .bytes = "untouched"};
    const bool read = decodeProgramFile(content, key, binary);
    EXPECT_EQ(read, binary.bytes != "untouched");
    EXPECT_TRUE(read || binary.format == 7);
    return read;
}

// FNV-1a in 64 bits, from its definition.
uint64_t hashOf(const std::string &bytes)
{
    uint64_t hash = 14695981039346656037u;
    for (const char byte : bytes) {
        hash ^= static_cast<unsigned char>(byte);
        hash *= 1099511628211u;
    }
    return hash;
}

// Puts the right checksum, at byte 40, into content that was changed on purpose.
std::string sealed(std::string content)
{
    const uint64_t none = 0;
    memcpy(content.data() + 40, &none, sizeof none);
    const uint64_t checksum = hashOf(content);
    memcpy(content.data() + 40, &checksum, sizeof checksum);
    return content;
}

template <typename Number>
std::string withNumberAt(std::string content, size_t at, Number number)
{
    memcpy(content.data() + at, &number, sizeof number);
    return sealed(content);
}

TEST(StoredProgramFile, WhatIsWrittenIsRead)
{
    for (const ProgramBinary &written : {kBinary, ProgramBinary{.format = 0xFFFFFFFF, .bytes = std::string(70000, 'x')},
                                         ProgramBinary{.format = 0, .bytes = ""}}) {
        ProgramBinary read{};
        ASSERT_TRUE(decodeProgramFile(encodeProgramFile(kKey, written), kKey, read));
        EXPECT_EQ(read.format, written.format);
        EXPECT_EQ(read.bytes, written.bytes);
    }
    EXPECT_EQ(sealed(encodeProgramFile(kKey, kBinary)), encodeProgramFile(kKey, kBinary)) << "the checksum's place";
}

TEST(StoredProgramFile, OnlyItsOwnKeyOpensIt)
{
    const std::string content = encodeProgramFile(kKey, kBinary);
    EXPECT_TRUE(isRead(content));
    std::string other = kKey;
    other.back() = 'x';
    for (const std::string &key : {other, kKey + "x", kKey.substr(0, kKey.size() - 1), std::string()})
        EXPECT_FALSE(isRead(content, key));
}

TEST(StoredProgramFile, EveryChangedByteIsNoticed)
{
    const std::string content = encodeProgramFile(kKey, kBinary);
    for (size_t at = 0; at < content.size(); ++at) {
        for (const int change : {0x01, 0x80, 0xFF}) {
            std::string damaged = content;
            damaged[at] = static_cast<char>(damaged[at] ^ change);
            EXPECT_FALSE(isRead(damaged)) << "byte " << at << " by " << change;
        }
    }
}

TEST(StoredProgramFile, EveryOtherLengthIsRefused)
{
    const std::string content = encodeProgramFile(kKey, kBinary);
    for (size_t length = 0; length < content.size(); ++length)
        EXPECT_FALSE(isRead(content.substr(0, length))) << length;
    EXPECT_FALSE(isRead(content + '\0'));
    EXPECT_FALSE(isRead(sealed(content.substr(0, content.size() - 1))));
    EXPECT_FALSE(isRead(sealed(content + '\0')));
}

// Numbers in the head that the checksum does not contradict. The head is magic (8 bytes), order, version (4 each),
// size of the key, size of the binary (8 each), format, reserved (4 each), checksum (8).
TEST(StoredProgramFile, ImpossibleHeadsAreRefused)
{
    const std::string content = encodeProgramFile(kKey, kBinary);
    EXPECT_TRUE(isRead(withNumberAt<uint32_t>(content, 32, 1))) << "another format is none of the file's business";
    EXPECT_FALSE(isRead(withNumberAt<uint32_t>(content, 8, 0x04030201))) << "another machine's order";
    EXPECT_FALSE(isRead(withNumberAt<uint32_t>(content, 12, 2))) << "another version";
    const uint64_t key = kKey.size();
    const uint64_t binary = kBinary.bytes.size();
    const uint64_t sizes[][2] = {
        {key + 1, binary - 1},
        {key - 1, binary + 1},
        {key, binary + 1},
        {key, binary - 1},
        {~uint64_t{0}, binary},
        {key, ~uint64_t{0}},
        {0, key + binary},
        {key + binary, 0},
        {~uint64_t{0} - 5, key + 6},
        {key + binary + 1, ~uint64_t{0}},
        {0, 0},
    };
    for (const auto &[keySize, binarySize] : sizes)
        EXPECT_FALSE(isRead(withNumberAt(withNumberAt(content, 16, keySize), 24, binarySize)))
            << keySize << ", " << binarySize;
}

TEST(StoredProgramFile, RandomBytesAreRefused)
{
    std::mt19937 random(20);
    const std::string content = encodeProgramFile(kKey, kBinary);
    for (int i = 0; i < 20000; ++i) {
        std::string bytes(random() % 200, '\0');
        for (char &byte : bytes)
            byte = static_cast<char>(random());
        // Half of them get past the first checks.
        const size_t head = i % 2 ? random() % (content.size() + 1) : 0;
        bytes.replace(0, std::min(head, bytes.size()), content, 0, head);
        if (i % 4 == 3 && bytes.size() >= 48) bytes = sealed(bytes);
        if (bytes == content) continue;
        const bool read = isRead(bytes);
        // A head that is whole, with a checksum made for what follows, is a valid file of that length.
        const bool valid = bytes.size() == content.size() && head >= 48 + kKey.size() && i % 4 == 3;
        EXPECT_TRUE(!read || valid) << "round " << i;
    }
}

TEST(StoredProgramFile, NamesAreHashesOfTheKey)
{
    EXPECT_EQ(programFileName(""), "cbf29ce484222325.program");
    EXPECT_EQ(programFileName("a"), "af63dc4c8601ec8c.program");
    for (const char *name : {"cbf29ce484222325.program", "0000000000000000.program"})
        EXPECT_TRUE(isProgramFileName(name)) << name;
    for (const char *name :
         {"", ".program", "cbf29ce48422232.program", "cbf29ce4842223250.program", "CBF29CE484222325.program",
          "cbf29ce484222325.programs", "cbf29ce484222325", "xbf29ce484222325.program", "../29ce484222325.program"})
        EXPECT_FALSE(isProgramFileName(name)) << name;
}

} // namespace
