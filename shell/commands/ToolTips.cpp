// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolTips.h"

namespace lantern {

QString WithoutKey(QStringView toolTip)
{
    const qsizetype from = toolTip.indexOf(u" (");
    const qsizetype to = toolTip.indexOf(u')', from);
    if (from < 0 || to < 0)
        return toolTip.toString();
    return toolTip.first(from).toString().append(toolTip.sliced(to + 1));
}

} // namespace lantern
