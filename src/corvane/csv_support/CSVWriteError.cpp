#include "corvane/csv_support/CSVWriteError.hpp"

namespace corvane {

std::string_view message(CSVWriteError error) {
    switch (error) {
    case CSVWriteError::cannotOpenFile:
        return "CSV writer cannot open file";
    case CSVWriteError::cannotReadFile:
        return "CSV writer cannot read file";
    case CSVWriteError::cannotWriteStream:
        return "CSV writer cannot write stream";
    }
    return {};
}

} // namespace corvane
