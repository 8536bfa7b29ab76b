// The starter library the editor opens by default: basic shapes and
// flowchart symbols, each with link points where connectors attach. Built
// by code (make_starter_library writes it at build time), so it always holds
// the records of the library that reads it.
#pragma once

#include <QStringList>

namespace faroven {
class TLibManager;
}

// Adds the starter entries to the library, in palette order.
void BuildStarterLibrary(faroven::TLibManager& library);
// The names of the entries BuildStarterLibrary adds, in order.
QStringList StarterEntryNames();
