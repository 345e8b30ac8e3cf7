// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#include "pagecache.h"

#include <algorithm>

#include <fcntl.h>

namespace pagecache {

namespace {

struct Inode
{
    std::string written;
    std::string synced;
};

using Names = std::map<std::string, int>; ///< path to the number of an inode

/// One change of names, in a directory.
struct Change
{
    std::string directory;
    std::string removed; ///< empty for none
    std::string added; ///< empty for none
    int inode;
};

std::string directoryOf(const std::string &path)
{
    return path.substr(0, path.rfind('/'));
}

class Machine
{
public:
    explicit Machine(const Disk &before)
    {
        for (const auto &[path, content] : before) {
            m_names[path] = m_journaled[path] = static_cast<int>(m_inodes.size());
            m_inodes.push_back({content, content});
        }
    }

    void apply(const faultshim::Event &event)
    {
        using faultshim::Kind;
        switch (event.kind) {
        case Kind::Open:
            open(event);
            break;
        case Kind::Write:
            write(event);
            break;
        case Kind::Truncate:
            if (const auto file = m_open.find(event.descriptor); file != m_open.end())
                m_inodes[file->second.inode].written.resize(static_cast<size_t>(event.offset));
            break;
        case Kind::Sync:
            sync(event);
            break;
        case Kind::Rename:
            change({directoryOf(event.target), event.path, event.target, m_names.at(event.path)});
            break;
        case Kind::Link:
            change({directoryOf(event.target), std::string(), event.target, m_names.at(event.path)});
            break;
        case Kind::Unlink:
            if (m_names.count(event.path))
                change({directoryOf(event.path), event.path, std::string(), 0});
            break;
        case Kind::Close:
            m_open.erase(event.descriptor);
            break;
        case Kind::Read:
        case Kind::Mode:
        case Kind::Look:
            break;
        }
    }

    void addStates(int calls, std::vector<State> &states) const
    {
        Names names = m_journaled;
        addStatesOf(names, calls, states);
        for (const Change &change : m_changes) {
            apply(change, names);
            addStatesOf(names, calls, states);
        }
    }

private:
    struct OpenFile
    {
        size_t inode;
        size_t position;
    };

    static void apply(const Change &change, Names &names)
    {
        if (!change.removed.empty())
            names.erase(change.removed);
        if (!change.added.empty())
            names[change.added] = change.inode;
    }

    void change(const Change &change)
    {
        apply(change, m_names);
        m_changes.push_back(change);
    }

    void open(const faultshim::Event &event)
    {
        if (event.flags & O_DIRECTORY)
            return;
        if (!m_names.count(event.path)) {
            if (!(event.flags & O_CREAT))
                return;
            m_inodes.emplace_back();
            change(
                {directoryOf(event.path), std::string(), event.path, static_cast<int>(m_inodes.size()) - 1});
        }
        const auto inode = static_cast<size_t>(m_names.at(event.path));
        if (event.flags & O_TRUNC)
            m_inodes[inode].written.clear();
        m_open[event.descriptor] = {inode, (event.flags & O_APPEND) ? m_inodes[inode].written.size() : 0};
    }

    void write(const faultshim::Event &event)
    {
        const auto file = m_open.find(event.descriptor);
        if (file == m_open.end())
            return;
        std::string &content = m_inodes[file->second.inode].written;
        const size_t at = event.offset >= 0 ? static_cast<size_t>(event.offset) : file->second.position;
        content.resize(std::max(content.size(), at + event.bytes.size()));
        content.replace(at, event.bytes.size(), event.bytes);
        if (event.offset < 0)
            file->second.position += event.bytes.size();
    }

    void sync(const faultshim::Event &event)
    {
        const auto file = m_open.find(event.descriptor);
        if (file != m_open.end()) {
            Inode &inode = m_inodes[file->second.inode];
            inode.synced = inode.written;
            return;
        }
        // The journal is written in order: what came before the directory's last change is kept with it.
        size_t kept = 0;
        for (size_t i = 0; i < m_changes.size(); ++i) {
            if (m_changes[i].directory == event.path)
                kept = i + 1;
        }
        for (size_t i = 0; i < kept; ++i)
            apply(m_changes[i], m_journaled);
        m_changes.erase(m_changes.begin(), m_changes.begin() + static_cast<std::ptrdiff_t>(kept));
    }

    /// The states with these names: once for each fate of what was written since the last sync.
    void addStatesOf(const Names &names, int calls, std::vector<State> &states) const
    {
        for (int fate = 0; fate < 4; ++fate) {
            Disk disk;
            bool lost = false;
            for (const auto &[path, number] : names) {
                const Inode &inode = m_inodes[static_cast<size_t>(number)];
                lost = lost || inode.written != inode.synced;
                disk[path] = contentOf(inode, fate);
            }
            states.push_back({calls, disk});
            if (!lost)
                return;
        }
    }

    static std::string contentOf(const Inode &inode, int fate)
    {
        if (fate == 0 || inode.written == inode.synced)
            return inode.synced;
        switch (fate) {
        case 1:
            return inode.written.substr(0, inode.written.size() / 2);
        case 2:
            return std::string(inode.written.size(), '\0');
        default:
            return inode.written;
        }
    }

    std::vector<Inode> m_inodes;
    Names m_names; ///< as a running program sees them
    Names m_journaled; ///< as they are sure to be found again
    std::vector<Change> m_changes; ///< from m_journaled to m_names
    std::map<int, OpenFile> m_open;
};

} // namespace

std::vector<State> statesAfterPowerCut(const Disk &before, const std::vector<faultshim::Event> &events)
{
    std::vector<State> states;
    Machine machine(before);
    machine.addStates(0, states);
    int calls = 0;
    for (const faultshim::Event &event : events) {
        if (event.error == 0)
            machine.apply(event);
        machine.addStates(++calls, states);
    }
    return states;
}

} // namespace pagecache
