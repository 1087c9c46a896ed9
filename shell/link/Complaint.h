// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

// What is said of a track that was named on the command line and can't be opened.
namespace lantern {

// What is wrong with the text of GetCommandArgs as far as its name tells; empty if nothing is. A
// start that hands the text over knows no more.
QString NameComplaint(const QString& commandArgs);

// What is wrong after a start that reached nobody to hand it to; empty if it holds no name.
QString LinkComplaint(const QString& commandArgs);

// What is wrong with it after an attempt that opened nothing: the loader's message, which may be
// empty, and the path if the message leaves it out.
QString OpeningComplaint(const QString& message, const QString& commandArgs);

// The line for standard error: the program's name and the complaint, in native bytes. Control
// characters, as a file's name may hold, stand as question marks, so that it is one line.
QByteArray ComplaintLine(const QString& complaint);

// Writes the line, if there is a complaint.
void Complain(const QString& complaint);

} // namespace lantern
