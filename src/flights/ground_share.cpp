#include "ground_share.h"

#include "mxbook/text.h"

namespace mxbook::flights {

long long GroundShare::of(int groundMinutes) const {
    return counts_ ? static_cast<long long>(roundHalfAwayFromZero(groundMinutes * factor_)) : 0;
}

GroundShare groundShare(db::Connection& connection, const std::string& aircraftType, GroundColumns columns) {
    // The column names come from the four pairs above, never from input.
    db::DataSet setting(connection, "Select " + std::string(columns.switchColumn) + ", " +
                                        std::string(columns.factorColumn) +
                                        " From TIPOVYE_DANNYE_VS Where TIP_VS=:pTIP_VS Order By ID;");
    setting.setParam("pTIP_VS", aircraftType);
    setting.open();
    if (setting.eof()) return {};
    const db::Field factor = setting.field(1);
    return {setting.field(0).asText() == "1", factor.isNull() ? 0.0 : factor.asDouble()};
}

int minutesOf(const db::Field& time) {
    const db::Value value = time.value();  // decoded once
    return value.isNull() ? 0 : value.asTime().wholeMinutes();
}

}  // namespace mxbook::flights
