#pragma once

/** Lowers what the calling thread, and every thread that it makes afterwards, may take from the user's own work. */
class NyBackgroundPriority
{
public:
    /** CPU nice 19, disk access only when nobody else asks. Refusals are logged; the work goes on as it was. */
    static void lower();
};
