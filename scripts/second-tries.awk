# SPDX-License-Identifier: GPL-3.0-or-later
# Passes on what ctest prints, with the tests that it ran more than once named before its summary.
# The variable logPath is the path of its log, which has each run in order.
/^[0-9]+% tests passed/ { inSummary = 1 }
inSummary { summary = summary $0 "\n"; next }
{ print; fflush() }

END {
    while ((getline line < logPath) > 0) {
        if (line ~ /^[0-9]+\/[0-9]+ Testing: /) {
            name = line
            sub(/^[0-9]+\/[0-9]+ Testing: /, "", name)
        } else if (before == "----------------------------------------------------------" &&
                   line ~ /^Test [A-Z][A-Za-z ]*\.$/) {
            runs[name]++
            last[name] = line
            if (runs[name] == 2)
                names[++count] = name
        }
        before = line
    }
    if (count > 0) {
        print "Tests that failed and were run again:"
        for (i = 1; i <= count; i++)
            print "    " names[i] ": then \"" last[names[i]] "\""
    }
    if (count > 0)
        print ""
    printf "%s", summary
}
