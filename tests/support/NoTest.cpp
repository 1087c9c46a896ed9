// SPDX-License-Identifier: GPL-3.0-or-later
// Nothing: a target that compiles headers for others needs a source of its own.
