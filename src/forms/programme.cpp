#include "programme.h"

#include "mxbook/data/data_set.h"
#include "mxbook/error.h"
#include "mxbook/text.h"

namespace mxbook::forms {

const ProgrammeKind aircraftProgramme{
    "PTO_FORMY",
    "Select * From PTO_FORMY Where TIP_VS=:pTIP Order By ID",
    "Select VREMIA_FORMA From PTO_FORMY Where TIP_VS=:pTIP Order By ID",
    3,
    4,
    true,
    2,
    5,
};

const ProgrammeKind engineProgramme{
    "PTO_FORMY_DVIG",
    "Select * From PTO_FORMY_DVIG Where TIP_VS=:pTIP Order By ID",
    "Select VREMIA_FORMA From PTO_FORMY_DVIG Where TIP_VS=:pTIP Order By ID",
    2,
    3,
    false,
    -1,
    -1,
};

namespace {

db::DataSet firstRowOfType(db::Connection& connection, std::string_view sql, const std::string& aircraftType) {
    db::DataSet rows(connection, std::string(sql), db::DataSet::Traversal::forwardOnly);
    rows.setParam("pTIP", aircraftType);
    rows.open();
    return rows;
}

// "20%10": the whole hours before and after the "%".
void readTolerancePair(const std::string& text, Programme& programme) {
    if (text.empty()) {
        programme.toleranceBefore = programme.toleranceAfter = 0;
        return;
    }
    const auto percent = text.find('%');
    if (percent == std::string::npos) throw ConversionError(text, "tolerance");
    try {
        programme.toleranceBefore = parseInt(std::string_view(text).substr(0, percent));
        programme.toleranceAfter = parseInt(std::string_view(text).substr(percent + 1));
    } catch (const ConversionError&) {
        throw ConversionError(text, "tolerance");
    }
}

}  // namespace

Programme readProgramme(db::Connection& connection, const ProgrammeKind& kind, const std::string& aircraftType) {
    db::DataSet rows = firstRowOfType(connection, kind.selectRow, aircraftType);
    Programme programme;
    if (rows.eof()) return programme;
    programme.found = true;
    programme.interval = rows.field(kind.intervalColumn).asInt();
    if (kind.lightIntervalColumn >= 0) programme.lightInterval = rows.field(kind.lightIntervalColumn).asInt();
    if (kind.cycleStepsColumn >= 0) programme.cycleSteps = rows.field(kind.cycleStepsColumn).asInt();
    if (kind.toleranceIsPair) {
        readTolerancePair(rows.field(kind.toleranceColumn).asText(), programme);
    } else {
        programme.toleranceBefore = programme.toleranceAfter = rows.field(kind.toleranceColumn).asInt();
    }
    for (int n = 0;; ++n) {
        const std::string column = "CASE" + std::to_string(n);
        if (!rows.hasField(column)) break;
        programme.stepNames.push_back(rows.field(column).asText());
    }
    return programme;
}

int divisibleInterval(db::Connection& connection, const ProgrammeKind& kind, const std::string& aircraftType) {
    db::DataSet rows = firstRowOfType(connection, kind.selectInterval, aircraftType);
    const int interval = rows.eof() ? 0 : rows.field(0).asInt();
    if (interval <= 0)
        throw DataError("aircraft type '" + aircraftType + "' has no form interval above zero in " +
                        std::string(kind.table));
    return interval;
}

const std::string& stepName(const Programme& programme, long long index, const std::string& aircraftType) {
    if (index < 0 || index >= static_cast<long long>(programme.stepNames.size()))
        throw DataError("the maintenance programme of aircraft type '" + aircraftType + "' has no column CASE" +
                        std::to_string(index));
    return programme.stepNames[static_cast<std::size_t>(index)];
}

LeftBeforeForm leftBeforeForm(long long due, long long done, long long tolerance) {
    const long long ahead = due - done;
    if (ahead > 0) return {LeftBeforeForm::State::ahead, ahead};
    const long long ofTolerance = tolerance + ahead;  // the tolerance less the overrun
    if (ofTolerance > 0) return {LeftBeforeForm::State::withinTolerance, ofTolerance};
    return {LeftBeforeForm::State::overrun, 0};
}

std::string timeLeftText(Minutes due, Minutes worked, int toleranceHours) {
    const LeftBeforeForm left = leftBeforeForm(due.count(), worked.count(), hours(toleranceHours).count());
    switch (left.state) {
    case LeftBeforeForm::State::ahead: return operating_time::format(Minutes(left.amount));
    case LeftBeforeForm::State::withinTolerance: return "+" + operating_time::format(Minutes(left.amount));
    case LeftBeforeForm::State::overrun: break;
    }
    return std::string(operating_time::doubleZero);
}

std::string landingsLeftText(long long due, long long done, long long tolerance) {
    const LeftBeforeForm left = leftBeforeForm(due, done, tolerance);
    switch (left.state) {
    case LeftBeforeForm::State::ahead: return std::to_string(left.amount);
    case LeftBeforeForm::State::withinTolerance: return "+" + std::to_string(left.amount);
    case LeftBeforeForm::State::overrun: break;
    }
    return "0";
}

}  // namespace mxbook::forms
