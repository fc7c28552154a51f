// What a move needs to know of a kind of unit: where its counters stand in
// its row, and where its reference entry is looked up for the question
// about a flight on the day of the move. Engines, APUs and rotor units add
// rows beside the general components.
#pragma once

namespace mxbook::movements {

struct UnitMove {
    const char* table;
    // Positions in the unit's row.
    int name;                  // the unit's name, drawing and factory numbers, named in the questions
    int drawingNumber;
    int serial;
    int readingAtInstallation; // the carrier's counter when the unit was installed
    int sinceNew;
    int sinceOverhaul;
    int oilTime;               // hours text, carried while an oil change date is set
    int oilChangeDate;
    int countsIn;              // 0 hours, 1 landings, other: neither is carried
    int mountedOn;             // 0 directly on the aircraft
    int referenceKey;
    int indirectFlag;          // 1: derived from the carrier, nothing added on installation
    // The reference entry by key, with the positions of its name and drawing number.
    const char* referenceSql;
    int referenceName;
    int referenceDrawingNumber;
};

inline constexpr UnitMove generalComponent{
    "AGREGAT", 2, 3, 4, 16, 17, 18, 21, 22, 24, 28, 34, 39,
    "Select * From ETAAGREGAT Where ID_NAME=:pID_NAME Order By ID;", 14, 2,
};

}  // namespace mxbook::movements
