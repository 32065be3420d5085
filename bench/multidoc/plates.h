// SPDX-License-Identifier: MIT
#pragma once

#include "multidoc/trigerdoc.h"

#include <QString>
#include <chrono>
#include <vector>

namespace bench {

constexpr unsigned int kDocuments = 50;
/// Inputs that the patterns watch.
constexpr unsigned int kWired = 0x3ff;
constexpr std::chrono::milliseconds kPatience{10000};

/// The name of a document, and the number in such a name.
QString nameOf(int document);
int documentOf(QString const& name);
/// Each document is one point at a place of its own: the document that was marked last, by where the head stands.
int documentAt(double x);

/// Stores the documents.
void storeDocuments();
/// The project of the window is from now on these entries.
void setProject(std::vector<TrigerDoc> entries);
/// Entries of five to seven inputs each: patterns that differ enough for every document to have its turn.
std::vector<TrigerDoc> mixedEntries();

/// Begins a run and ends it as the operator does; false when it has not begun in time.
bool startRun();
void stopRun();

} // namespace bench
