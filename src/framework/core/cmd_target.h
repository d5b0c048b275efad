// Commands, control notifications and update requests, and the message maps that bind them to handlers. A map
// is a static table of its class; what it does not hold is looked for in the base class's table.
#pragma once

#include "base/types.h"

#include <functional>
#include <span>
#include <string>

class CCmdTarget;

// What is asked of a target besides a control's own notification codes.
constexpr u32 CN_COMMAND = 0;
constexpr u32 CN_UPDATE_COMMAND_UI = 0xFFFFFFFF;

// A combo box whose selection the user has changed.
constexpr u32 CBN_SELCHANGE = 1;

// One item that shows the state of a command: a menu entry, a button, a pane. What Enable, SetCheck, SetText
// and SetPrompt do is up to the item.
class CCmdUI {
  public:
    explicit CCmdUI(u32 nID) : m_nID(nID) {}
    CCmdUI(const CCmdUI&) = delete;
    CCmdUI& operator=(const CCmdUI&) = delete;
    virtual ~CCmdUI() = default;

    virtual void Enable(bool bOn) = 0;
    virtual void SetCheck(int nCheck) = 0;
    virtual void SetText(const std::string& strText) = 0;
    virtual void SetPrompt(const std::string&) {}  // what the item is for, in place of the command's prompt

    // Asks the target, and those after it, for the command's state. Where no update handler took it,
    // bDisableIfNoHandler disables the command unless some handler would carry it out.
    void DoUpdate(CCmdTarget& target, bool bDisableIfNoHandler);

    const u32 m_nID;
    bool m_bContinueRouting = false;  // set by an update handler that leaves the decision to the framework
};

struct MessageEntry {
    u32 nCode;
    u32 nFirstID;
    u32 nLastID;
    void (*pCall)(CCmdTarget&, u32 nID, CCmdUI*);  // the item is null but for updates
};

struct MessageMap {
    const MessageMap* pBase;  // null in the map of CCmdTarget itself
    std::span<const MessageEntry> entries;
};

class CCmdTarget {
  public:
    CCmdTarget() = default;
    CCmdTarget(const CCmdTarget&) = delete;
    CCmdTarget& operator=(const CCmdTarget&) = delete;
    virtual ~CCmdTarget() = default;

    // True when a handler of this target, or of one after it, took it. pUi: the item for
    // CN_UPDATE_COMMAND_UI, else null.
    bool OnCmdMsg(u32 nID, u32 nCode, CCmdUI* pUi);

    // Whether there is a handler for this; none is called.
    bool HasHandler(u32 nID, u32 nCode);

    // The way of a command: offers the visitor this target and then those after it, until it answers true,
    // which is the answer then. A target that has others before or after it overrides this.
    using Visitor = std::function<bool(CCmdTarget&)>;
    virtual bool VisitTargets(const Visitor& visit) { return visit(*this); }

  protected:
    virtual const MessageMap& GetMessageMap() const;

    static const MessageMap s_messageMap;

  private:
    const MessageEntry* FindEntry(u32 nID, u32 nCode) const;
    bool Handle(u32 nID, u32 nCode, CCmdUI* pUi);
};

namespace message_map {

template <typename>
struct HandlerClass;
template <typename Class>
struct HandlerClass<void (Class::*)()> {
    using Type = Class;
};
template <typename Class, typename Argument>
struct HandlerClass<void (Class::*)(Argument)> {
    using Type = Class;
};

template <auto Handler>
using ClassOf = typename HandlerClass<decltype(Handler)>::Type;

}  // namespace message_map

template <auto Handler>
constexpr MessageEntry OnControl(u32 nCode, u32 nID) {
    return {nCode, nID, nID, [](CCmdTarget& target, u32, CCmdUI*) {
                (static_cast<message_map::ClassOf<Handler>&>(target).*Handler)();
            }};
}

template <auto Handler>
constexpr MessageEntry OnCommand(u32 nID) {
    return OnControl<Handler>(CN_COMMAND, nID);
}

// The handler is told which of the commands it is.
template <auto Handler>
constexpr MessageEntry OnCommandRange(u32 nFirstID, u32 nLastID) {
    return {CN_COMMAND, nFirstID, nLastID, [](CCmdTarget& target, u32 nID, CCmdUI*) {
                (static_cast<message_map::ClassOf<Handler>&>(target).*Handler)(nID);
            }};
}

template <auto Handler>
constexpr MessageEntry OnUpdateCommandUiRange(u32 nFirstID, u32 nLastID) {
    return {CN_UPDATE_COMMAND_UI, nFirstID, nLastID, [](CCmdTarget& target, u32, CCmdUI* pUi) {
                (static_cast<message_map::ClassOf<Handler>&>(target).*Handler)(pUi);
            }};
}

template <auto Handler>
constexpr MessageEntry OnUpdateCommandUi(u32 nID) {
    return OnUpdateCommandUiRange<Handler>(nID, nID);
}
