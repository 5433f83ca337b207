#pragma once

#include "support/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace lumisort::test {

/// The rows of a table of spectral data in the corpus, less the heading. What is no number reads as 0.
inline std::vector<std::vector<double>> spectralTable(const std::string& name) {
    std::ifstream file(*corpus() / "spectral" / name);
    std::vector<std::vector<double>> rows;
    std::string line;
    for (std::getline(file, line); std::getline(file, line);) {
        std::vector<double> row;
        std::istringstream cells(line);
        for (std::string cell; std::getline(cells, cell, ',');) row.push_back(std::atof(cell.c_str()));
        rows.push_back(row);
    }
    return rows;
}

} // namespace lumisort::test
