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

struct Groups {
    std::mutex mutex;
    std::vector<Member> members;
    uint32_t last = 0;
};

// Never destroyed: other libraries' exit functions may still destroy contexts.
Groups &groups()
{
    static Groups &kept = *new Groups;
    return kept;
}

template <typename Condition>
void forgetIf(Condition condition)
{
    const std::lock_guard lock(groups().mutex);
    std::erase_if(groups().members, condition);
}

} // namespace

uint32_t newShareGroup()
{
    const std::lock_guard lock(groups().mutex);
    return ++groups().last;
}

uint32_t shareGroupOf(EGLContext machine)
{
    const std::lock_guard lock(groups().mutex);
    for (const Member &member : groups().members)
        if (member.context == machine) return member.group;
    return 0;
}

void noteShareGroup(EGLDisplay display, EGLContext machine, uint32_t group)
{
    forgetShareGroup(machine);
    const std::lock_guard lock(groups().mutex);
    groups().members.push_back({display, machine, group});
}

void forgetShareGroup(EGLContext machine)
{
    forgetIf([=](const Member &member) { return member.context == machine; });
}

void forgetShareGroupsOf(EGLDisplay display)
{
    forgetIf([=](const Member &member) { return member.display == display; });
}
