// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class frmOptions;

// What assistive tools know of the options window: of its two panels only the one in front, since
// nobody can use what lies behind it.
class OptionsAccessible : public QAccessibleWidget {
public:
    explicit OptionsAccessible(frmOptions& options);

    // For each window that is made from now on.
    static void Install();

    int childCount() const override { return 1; }
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;

private:
    frmOptions& m_options;
};

} // namespace lantern
