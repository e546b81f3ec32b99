#pragma once
// The old Japanese lunisolar calendar (to be written).
