// Start-up tuning of the heap for a run that builds tens of megabytes of
// record arrays and tables: the heap is grown once, ahead of use, and the
// kernel is asked to back it with huge pages where it can.
#pragma once

// Safe to call once at start-up and only then; does nothing where the system
// offers no such advice.
void ReserveHeapOnHugePages();
