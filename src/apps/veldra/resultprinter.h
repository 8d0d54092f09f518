#pragma once

#include "host/resultprinter.h"

#include "outputfile.h"

#include <QString>

#include <memory>

using host::ResultPrinter;

// A printer for table, csv, json or xml; nullptr for another name.
std::unique_ptr<ResultPrinter> createPrinter(const QString &format, OutputFile &out);
