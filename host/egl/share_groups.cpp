// SPDX-License-Identifier: MIT
#include "share_groups.h"

#include <mutex>
#include <vector>

namespace {

struct Member {
    EGLDisplay display;
    EGLContext context;
    uint32_t group;
};

constinit std::mutex membersMutex;
constinit std::vector<Member> members;
constinit uint32_t lastGroup = 0;

} // namespace

uint32_t newShareGroup()
{
    const std::lock_guard lock(membersMutex);
    return ++lastGroup;
}

uint32_t shareGroupOf(EGLContext machine)
{
    const std::lock_guard lock(membersMutex);
    for (const Member &member : members)
        if (member.context == machine) return member.group;
    return 0;
}

void noteShareGroup(EGLDisplay display, EGLContext machine, uint32_t group)
{
    const std::lock_guard lock(membersMutex);
    std::erase_if(members, [=](const Member &member) { return member.context == machine; });
    members.push_back({display, machine, group});
}

void forgetShareGroup(EGLContext machine)
{
    const std::lock_guard lock(membersMutex);
    std::erase_if(members, [=](const Member &member) { return member.context == machine; });
}

void forgetShareGroupsOf(EGLDisplay display)
{
    const std::lock_guard lock(membersMutex);
    std::erase_if(members, [=](const Member &member) { return member.display == display; });
}
