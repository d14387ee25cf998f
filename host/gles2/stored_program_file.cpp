// SPDX-License-Identifier: MIT
#include "stored_program_file.h"

#include <cstring>

// All numbers are in this machine's byte order, which `order` tells.
struct FileHead {
    char magic[8];
    uint32_t order;
    uint32_t version;    // of this layout
    uint64_t keySize;    // bytes behind the head
    uint64_t binarySize; // bytes behind the key, to the file's end
    uint32_t binaryFormat;
    uint32_t reserved; // 0
    uint64_t checksum; // of the head with a checksum of 0, the key and the binary
};
static_assert(sizeof(FileHead) == 48);

static constexpr std::string_view kMagic = "TRL20PRG";
static constexpr uint32_t kOrder = 0x01020304;
static constexpr uint32_t kVersion = 1;
static constexpr uint64_t kHashStart = 0xcbf29ce484222325; // of FNV-1a in 64 bits
static constexpr std::string_view kEnding = ".program";
static constexpr size_t kHashDigits = 16;

// FNV-1a: every single changed byte changes the result. Chance is what it guards against, not intent.
static uint64_t addToHash(uint64_t hash, std::string_view bytes)
{
    for (const char byte : bytes)
        hash = (hash ^ static_cast<uint8_t>(byte)) * 0x100000001b3;
    return hash;
}

static uint64_t checksumOf(FileHead head, std::string_view rest)
{
    head.checksum = 0;
    char bytes[sizeof head];
    memcpy(bytes, &head, sizeof head);
    return addToHash(addToHash(kHashStart, {bytes, sizeof bytes}), rest);
}

std::string encodeProgramFile(std::string_view key, const ProgramBinary &binary)
{
    FileHead head{.magic = {},
                  .order = kOrder,
                  .version = kVersion,
                  .keySize = key.size(),
                  .binarySize = binary.bytes.size(),
                  .binaryFormat = binary.format,
                  .reserved = 0,
                  .checksum = 0};
    memcpy(head.magic, kMagic.data(), sizeof head.magic);
    std::string content(sizeof head, '\0');
    content += key;
    content += binary.bytes;
    head.checksum = checksumOf(head, std::string_view(content).substr(sizeof head));
    memcpy(content.data(), &head, sizeof head);
    return content;
}

bool decodeProgramFile(std::string_view content, std::string_view key, ProgramBinary &binary)
{
    FileHead head;
    if (content.size() < sizeof head) return false;
    memcpy(&head, content.data(), sizeof head);
    if (std::string_view(head.magic, sizeof head.magic) != kMagic || head.order != kOrder || head.version != kVersion)
        return false;
    const std::string_view rest = content.substr(sizeof head);
    if (head.keySize != key.size() || head.keySize > rest.size() || head.binarySize != rest.size() - head.keySize)
        return false;
    if (rest.substr(0, key.size()) != key || head.checksum != checksumOf(head, rest)) return false;
    binary.format = head.binaryFormat;
    binary.bytes = rest.substr(key.size());
    return true;
}

std::string programFileName(std::string_view key)
{
    static constexpr char kDigits[] = "0123456789abcdef";
    const uint64_t hash = addToHash(kHashStart, key);
    std::string name;
    for (size_t i = kHashDigits; i-- > 0;)
        name += kDigits[hash >> (4 * i) & 15];
    return name.append(kEnding);
}

bool isProgramFileName(std::string_view name)
{
    return name.size() == kHashDigits + kEnding.size() && name.ends_with(kEnding) &&
           name.find_first_not_of("0123456789abcdef") == kHashDigits;
}
