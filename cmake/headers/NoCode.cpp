// SPDX-License-Identifier: GPL-3.0-or-later
// The headers beside this file are compiled with it.
