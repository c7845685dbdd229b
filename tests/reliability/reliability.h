#pragma once

// What the reliability harness seeds into its books and what reliability_child types:
// both sides must agree, so the names and typed values live here once.
namespace Reliability {

inline constexpr const char *EditName = "Reliability Alpha";    // address and notes saves
inline constexpr const char *OtherName = "Reliability Beta";    // where the address save moves on
inline constexpr const char *WorkerName = "Reliability Worker"; // pay details
inline constexpr const char *GoneName = "Reliability Gone";     // deleted
inline constexpr const char *NewName = "Reliability New Hand";  // added as an employee
inline constexpr const char *LoopPrefix = "Reliability Loop ";  // contention: one entry each

// The address save: these fields of EditName, in AddressBookLogic's field order.
inline constexpr int EditedFields[] = {5, 9, 13,
                                       16}; // BusAddress1, BusCity, BusPhone, ContactEmail
inline constexpr const char *EditedValues[] = {"1 Crash Test Lane", "Faultville", "07 555 0199",
                                               "crash@test.example"};
inline constexpr const char *NotesLine = "Reliability note: whole or absent";

inline constexpr const char *NewPayRate = "$31.37";
inline constexpr int DeductionRows = 10; // FixedAmount $1.00 .. $10.00

} // namespace Reliability
