// What a program has freed and keeps for itself.
#pragma once

namespace vexa {

/// Hands freed memory back that the program keeps to use it again (KeepFreedMemory): once, after
/// work whose like will not come again, a start. Without effect where the system does so by itself.
void GiveBackFreedMemory();

}  // namespace vexa
