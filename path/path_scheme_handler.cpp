#include <ic/path/path_scheme_handler.h>

namespace ic {
namespace {

// The process-wide slots: plain words, null at start, set by the host before other threads use
// the library.
template <class Unit>
PathSchemeHandlerT<Unit>* handlerSlot = nullptr;

}  // namespace

PathSchemeHandler* SetPathSchemeHandler(PathSchemeHandler* handler) noexcept {
  handlerSlot<char> = handler;
  return handler;
}

PathSchemeHandlerW* SetPathSchemeHandler(PathSchemeHandlerW* handler) noexcept {
  handlerSlot<char16_t> = handler;
  return handler;
}

template <class Unit>
PathSchemeHandlerT<Unit>* GetPathSchemeHandler() noexcept {
  return handlerSlot<Unit>;
}

template IC_API PathSchemeHandlerT<char>* GetPathSchemeHandler<char>() noexcept;
template IC_API PathSchemeHandlerT<char16_t>* GetPathSchemeHandler<char16_t>() noexcept;

}  // namespace ic
