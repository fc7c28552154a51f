// Positions in a general component's row (AGREGAT) that the moves and the
// walks over an engine's units read and write.
#pragma once

namespace mxbook::movements::agregat {

constexpr int aircraftType = 1;     // TIP_VS
constexpr int name = 2;             // NAZVANIE
constexpr int drawingNumber = 3;    // CHERT_NOMER
constexpr int intervalLimit = 12;   // RESURS_OBSH (hours or landings)
constexpr int intervalTerm = 13;    // SROK_OBSH
constexpr int overhaulLimit = 14;   // RESURS_MR
constexpr int overhaulTerm = 15;    // SROK_MR
constexpr int oilTracked = 19;      // UCHET_MASLA
constexpr int counterUnit = 24;     // EDINICA_NARABOTKI
constexpr int aircraftSystem = 25;  // SISTEMA_VS
constexpr int installed = 26;       // DATA_USTANOVKI: the date of the last move
constexpr int location = 27;        // GDE_STOIT
constexpr int mounting = 28;        // PLAN_DVIG_VSU
constexpr int engineSerial = 29;    // NUMER_DVIG_VSU
constexpr int nextCheck = 31;       // DATA_KONTROLYA_VNE_VS: a year after the engine last moved
constexpr int unitCode = 32;        // KOD_AGREGATA
constexpr int referenceKey = 34;    // ID_NAME
constexpr int place = 36;           // MESTO_USTANOVKI
constexpr int owner = 37;           // SOBSTVENNOST

}  // namespace mxbook::movements::agregat
