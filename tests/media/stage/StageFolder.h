// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTemporaryDir>

#include <fstream>
#include <iterator>
#include <string>

namespace lantern {

// A folder of a user, with the file of the stage's choices in it.
class StageFolder {
public:
    QString Path() const { return m_folder.path() + u'/'; }
    std::string File() const { return Path().toStdString() + "data_stage.ini"; }
    void Write(const std::string& bytes) const { std::ofstream(File(), std::ios::binary) << bytes; }
    std::string Written() const
    {
        std::ifstream file(File(), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool IsThere() const { return std::ifstream(File()).good(); }

private:
    QTemporaryDir m_folder;
};

} // namespace lantern
