#pragma once

#include "nyguiwidgets_export.h"

/** What the running desktop can do. Cheap to make: answers are kept for the whole process. Main thread. */
class NYGUIWIDGETS_EXPORT NyLinuxDesktop
{
public:
    NyLinuxDesktop();
    ~NyLinuxDesktop();

    /**
     * Whether the notification server renders HTML in a notification's body, its pictures included.
     *
     * Servers name both apart, as "body-markup" and "body-images"; one that has markup only would show a picture's tag as text,
     * so both must be there. The answer is kept until the server's place on the bus changes hands. False without a
     * server, and when it does not answer within 500 ms.
     */
    bool supportsHTMLNotifications() const;
};
