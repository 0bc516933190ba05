#pragma once

namespace joined {

inline constexpr const char* notes = R"(
display 1 1440x900 scale 2
app Browser pid 40 bundle com.example.browser chromium frontmost
    window 5 "Start" at 0,30 size 600x500
app Notes pid 41 bundle com.example.notes
    window 7 "Inbox" at 100,80 size 800x600
        AXButton "Send" at 120,90 size 60x20 press: append "sent" to Body
        AXTextArea "Body" at 120,130 size 700x400 value "hello "
app Mail pid 42
    window 8 "Drafts" at 900,80 size 500x600
        AXButton "New" at 920,90 size 60x20
)";

}  // namespace joined
