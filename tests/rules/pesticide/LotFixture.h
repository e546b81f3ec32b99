#pragma once
// The pesticide lots the pesticide tests start from, written through the
// shared record builder:
//
// farmer 1: lot 1 (3 kg on credit for 4500, slip 3, 1 used on two days:
// 500 g and 0.5 kg), lot 2 (used up, on one day), lot 3 (no quantity, no
// number), lot 4 (a stale count of 0.5 with no use, slip 4); farmer 2: lot 5
// and its slip 9.
void seedLots();
