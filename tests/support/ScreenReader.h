// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "XServer.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace lantern::test {

// What a screen reader knows of one object of a program.
struct ReadObject {
    int depth = 0; // 0 for the program itself
    std::string role;
    std::string name;
    std::string description;
    std::vector<std::string> states;
    std::string value; // empty for an object without one
    std::string minimum;
    std::string maximum;
    std::string step;
    std::vector<std::string> actions;

    bool Is(std::string_view state) const;
    bool Can(std::string_view action) const;
};

// All objects of a program, parents before their children.
class ReadTree {
public:
    explicit ReadTree(std::vector<ReadObject> objects) : m_objects(std::move(objects)) {}

    const std::vector<ReadObject>& Objects() const { return m_objects; }
    // An object without a role if there is none.
    ReadObject Top() const { return m_objects.empty() ? ReadObject() : m_objects.front(); }
    // The first of that role and name; an object without a role if there is none.
    ReadObject Find(std::string_view role, std::string_view name) const;
    // That object and all below it.
    ReadTree Below(std::string_view role, std::string_view name) const;
    std::vector<std::string> Names(std::string_view role) const;

private:
    std::vector<ReadObject> m_objects;
};

// A desktop's buses with the service that screen readers ask, and one that listens: the real client
// library in a process of its own. The program that it reads needs Environment().
class ScreenReader {
public:
    ScreenReader(const XServer& screen, const std::string& title); // of the program
    ~ScreenReader();

    EnvironmentChanges Environment() const { return {{"DBUS_SESSION_BUS_ADDRESS", m_busAddress}}; }

    // A path is roles and names from the program down: "frame:Options", "slider:Volume".
    using Path = std::vector<std::string>;

    ReadTree Tree();
    // What the reader could not do fails the running test.
    void Do(const std::string& action, const Path& path);
    void Set(double value, const Path& path);

    // Whether it hears such an event, from this moment on: its type, detail, role and name.
    class Listening {
    public:
        bool Hears(std::string_view event, Clock::duration atMost = 20s) const;
        int Count(std::string_view event) const; // until now

    private:
        friend class ScreenReader;
        explicit Listening(const ScreenReader& reader);
        const ScreenReader* m_reader;
        std::size_t m_from;
    };
    Listening Listen() const { return Listening(*this); }

private:
    EnvironmentChanges OwnEnvironment() const;
    void StartBuses();
    std::string Ask(const std::string& question);
    std::string Heard() const { return ReadFile(m_folder / "reader.log"); }

    const XServer& m_screen;
    ScratchFolder m_folder;
    std::unique_ptr<Process> m_sessionBus;
    std::unique_ptr<Process> m_launcher;
    std::unique_ptr<Process> m_reader;
    std::string m_busAddress;
};

} // namespace lantern::test
