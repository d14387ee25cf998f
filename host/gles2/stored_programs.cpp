// SPDX-License-Identifier: MIT
#include "stored_programs.h"

#include "context.h"
#include "driver_limit.h"
#include "folder.h"
#include "stored_program_file.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <dirent.h>
#include <fcntl.h>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>

static constexpr size_t kMostFiles = 1000;              // counted when a process starts
static constexpr off_t kMostBytes = 64 << 20;           // of all files, likewise
static constexpr off_t kLargestFile = 8 << 20;          // bytes; ordinary ones have tens of thousands
static constexpr time_t kAbandonedAfter = 24 * 60 * 60; // seconds until a file that was never finished is removed

static constinit int folder = -1; // descriptor; -1 without a folder

bool storesPrograms()
{
    return folder >= 0;
}

// --- the driver

static bool hasEs3()
{
    const GLubyte *version = driver.glGetString(GL_VERSION);
    const bool es3 = version && std::string_view(reinterpret_cast<const char *>(version)).starts_with("OpenGL ES 3");
    return es3 && driverLimit() != DriverLimit::Es2;
}

// The driver's pair of functions; null where the current context has none.
struct BinaryFunctions {
    decltype(Driver::glGetProgramBinary) get;
    decltype(Driver::glProgramBinary) load;
};

static BinaryFunctions binaryFunctions()
{
    if (hasEs3()) return {driver.glGetProgramBinary, driver.glProgramBinary};
    if (!hasExtension(driverExtensions(), "GL_OES_get_program_binary")) return {nullptr, nullptr};
    return {driver.glGetProgramBinaryOES, driver.glProgramBinaryOES};
}

// Formats that the driver takes; none when it does not give programs away.
static std::vector<GLint> binaryFormats()
{
    const BinaryFunctions functions = binaryFunctions();
    GLint count = 0;
    if (functions.get && functions.load) driver.glGetIntegerv(GL_NUM_PROGRAM_BINARY_FORMATS_OES, &count);
    std::vector<GLint> formats(static_cast<size_t>(std::max(count, 0)));
    if (count > 0) driver.glGetIntegerv(GL_PROGRAM_BINARY_FORMATS_OES, formats.data());
    return formats;
}

std::string storedProgramKey(const TranslatedProgram &texts, const AttributeBindings &bindings)
{
    if (binaryFormats().empty()) {
        tellOnce("TRL20_PROGRAM_CACHE: this driver does not give its programs away; none are kept");
        return {};
    }
    std::string key;
    for (GLenum name : {GL_VENDOR, GL_RENDERER, GL_VERSION, GL_SHADING_LANGUAGE_VERSION}) {
        const GLubyte *text = driver.glGetString(name);
        key += (text ? reinterpret_cast<const char *>(text) : "") + std::string(1, '\0');
    }
    for (const std::string *text : {&texts.vertex, &texts.geometry, &texts.fragment})
        key += *text + '\0';
    for (const auto &[name, index] : bindings)
        key += name + '\0' + std::to_string(index) + '\0';
    return key;
}

void askForStorage(GLuint program)
{
    if (hasEs3() && driver.glProgramParameteri)
        driver.glProgramParameteri(program, GL_PROGRAM_BINARY_RETRIEVABLE_HINT, GL_TRUE);
}

// The application's own pending error is put aside, and those of the call forgotten.
static bool handToDriver(GLuint program, const ProgramBinary &binary)
{
    const std::vector<GLint> formats = binaryFormats();
    const GLint format = static_cast<GLint>(binary.format);
    if (std::find(formats.begin(), formats.end(), format) == formats.end()) return false;
    raiseError(driver.glGetError());
    binaryFunctions().load(program, binary.format, binary.bytes.data(), static_cast<GLsizei>(binary.bytes.size()));
    const bool accepted = driver.glGetError() == GL_NO_ERROR;
    GLint status = GL_FALSE;
    driver.glGetProgramiv(program, GL_LINK_STATUS, &status);
    return accepted && status == GL_TRUE;
}

static bool takeFromDriver(GLuint program, ProgramBinary &binary)
{
    GLint length = 0;
    driver.glGetProgramiv(program, GL_PROGRAM_BINARY_LENGTH_OES, &length);
    if (length <= 0 || length > kLargestFile) return false;
    GLsizei written = 0;
    GLenum format = 0;
    raiseError(driver.glGetError());
    binary.bytes.resize(static_cast<size_t>(length));
    binaryFunctions().get(program, length, &written, &format, binary.bytes.data());
    if (driver.glGetError() != GL_NO_ERROR || written <= 0 || written > length) return false;
    binary.bytes.resize(static_cast<size_t>(written));
    binary.format = format;
    return true;
}

// --- the files

// The user's own, and written by nobody else.
static bool isTrusted(const struct stat &status)
{
    return status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

// The whole file, empty when it cannot be trusted or read. It is read rather than mapped, so that another process may
// shorten it meanwhile.
static std::string readTrusted(const std::string &name)
{
    // Not blocking: it may turn out to be a pipe.
    const int file = openat(folder, name.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (file < 0) return {};
    struct stat status;
    std::string content;
    if (fstat(file, &status) == 0 && S_ISREG(status.st_mode) && isTrusted(status) && status.st_size <= kLargestFile)
        content = readAll(file, static_cast<size_t>(status.st_size));
    if (!content.empty()) futimens(file, nullptr); // the files used least recently are the first to go
    close(file);
    return content;
}

bool loadStoredProgram(const std::string &key, GLuint program)
{
    ProgramBinary binary;
    return decodeProgramFile(readTrusted(programFileName(key)), key, binary) && handToDriver(program, binary);
}

void storeProgram(const std::string &key, GLuint program)
{
    ProgramBinary binary;
    if (!takeFromDriver(program, binary)) return;
    const std::string content = encodeProgramFile(key, binary);
    if (static_cast<off_t>(content.size()) > kLargestFile) return;
    if (!replaceFile(folder, programFileName(key), content, 0600))
        tellOnce("TRL20_PROGRAM_CACHE: a program could not be written to the folder");
}

// --- the start

struct StoredFile {
    std::string name;
    time_t used;
    off_t size;
};

// Begins with the name of a program's file and a dot before it, see replaceFile.
static bool isUnfinished(std::string_view name)
{
    const size_t end = name.find(".program.");
    return name.starts_with('.') && end != std::string_view::npos && isProgramFileName(name.substr(1, end + 7));
}

static std::vector<StoredFile> listFiles()
{
    std::vector<StoredFile> files;
    DIR *listing = fdopendir(openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!listing) return files;
    const time_t now = time(nullptr);
    while (const dirent *entry = readdir(listing)) {
        struct stat status;
        if (fstatat(folder, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        if (isProgramFileName(entry->d_name))
            files.push_back({entry->d_name, status.st_mtime, status.st_size});
        else if (isUnfinished(entry->d_name) && now - status.st_mtime > kAbandonedAfter)
            unlinkat(folder, entry->d_name, 0);
    }
    closedir(listing);
    return files;
}

// Removes the files used least recently until a quarter of the room is free, when it is full.
static void makeRoom()
{
    std::vector<StoredFile> files = listFiles();
    size_t count = files.size();
    off_t bytes = 0;
    for (const StoredFile &file : files)
        bytes += file.size;
    if (count <= kMostFiles && bytes <= kMostBytes) return;
    std::sort(files.begin(), files.end(), [](const StoredFile &a, const StoredFile &b) { return a.used < b.used; });
    for (const StoredFile &file : files) {
        if (count <= kMostFiles / 4 * 3 && bytes <= kMostBytes / 4 * 3) return;
        unlinkat(folder, file.name.c_str(), 0);
        --count;
        bytes -= file.size;
    }
}

static void startOnce()
{
    const char *path = secure_getenv("TRL20_PROGRAM_CACHE");
    if (!path || !*path) return;
    const int opened = openFolder(path, 0700);
    struct stat status;
    if (opened < 0 || fstat(opened, &status) != 0) {
        fprintf(stderr, "trl20: TRL20_PROGRAM_CACHE: cannot use %s: %s; no programs are kept\n", path, strerror(errno));
        return;
    }
    if (!isTrusted(status)) {
        fprintf(stderr,
                "trl20: TRL20_PROGRAM_CACHE: %s must be your own folder, and nobody else may write to it (chmod go-w); "
                "no programs are kept\n",
                path);
        close(opened);
        return;
    }
    folder = opened;
    makeRoom();
}

void startStoredPrograms()
{
    static std::once_flag once;
    std::call_once(once, startOnce);
}
