#pragma once
// The fixed ids of the farm's books and diary: the accounts of L_ACC that
// the program posts to by itself, the sides of a slip that name what owns
// it, and the kinds of diary work that other records write.

namespace Acc {
constexpr int Cash = 1000;           // 現金
constexpr int Deposit = 1010;        // 預金
constexpr int Receivable = 1040;     // 売掛金
constexpr int PesticideStock = 1130; // 農薬 (the lots bought, not yet used)
constexpr int Payable = 2000;        // 買掛金
constexpr int Sales = 4000;          // 売上
constexpr int PesticideCost = 4160;  // 農薬費 (the lots used)
constexpr int ShopFee = 4520;        // 販売手数料
} // namespace Acc

// What the option of a slip's side names (D_OPT_KBN, C_OPT_KBN).
namespace OptKbn {
constexpr int None = 0;
constexpr int Planting = 2;
constexpr int PesticideLot = 3;
} // namespace OptKbn

// Kinds of work of a diary line (D_DIARY_DTL.WORK_KBN) that other records write.
namespace WorkKbn {
constexpr int Spraying = 5;  // a pesticide application, with its lot
constexpr int Shipment = 8;  // a shipment, pointing at its D_SHIP row
} // namespace WorkKbn
