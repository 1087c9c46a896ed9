# SPDX-License-Identifier: GPL-3.0-or-later
# What a test takes of the machine, in shares; scripts/test gives out 24 for each processor. A test
# that measures moments leaves room for two that only compute, behind all others, in what time is
# left. Of the others one runs for each processor; beside two journeys there is room for the soak.
include_guard(GLOBAL)
cmake_host_system_information(RESULT processors QUERY NUMBER_OF_LOGICAL_CORES)
set(LANTERN_SHARES_BEHIND 6)
math(EXPR LANTERN_SHARES_ALONE "24 * ${processors} - 2 * ${LANTERN_SHARES_BEHIND}")
set(LANTERN_SHARES_JOURNEY 17)
set(LANTERN_SHARES_SOAK 13)
set(LANTERN_SHARES 24)
# What comes first: what leaves the most room for others behind it, and then what takes longest.
set(LANTERN_COST_ALONE 2)
set(LANTERN_COST_SOAK 1)

# Of the tests behind all others as many run as leave each a good part of a processor.
function(lantern_take_turns test)
    get_property(turn GLOBAL PROPERTY LANTERN_TURN)
    math(EXPR turn "(0${turn} + 1) % ${processors}")
    set_property(GLOBAL PROPERTY LANTERN_TURN ${turn})
    set_tests_properties(${test} PROPERTIES RESOURCE_LOCK behind${turn})
endfunction()
