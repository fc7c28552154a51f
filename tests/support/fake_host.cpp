#include "fake_host.h"

#include <gtest/gtest.h>

namespace mxbook::testing {

Answer FakeHost::messageBox(Window owner, const std::string& text, const std::string& caption, unsigned flags) {
    shown.push_back(Shown{owner, text, caption, flags});
    if ((flags & box::buttonsMask) != box::yesNo) return Answer::ok;
    if (answers.empty()) {
        ADD_FAILURE() << "unexpected question: " << text;
        return Answer::no;
    }
    const Answer answer = answers.front();
    answers.pop_front();
    return answer;
}

std::string FakeHost::windowTitle(Window window) {
    const auto found = titles.find(window.id);
    return found == titles.end() ? std::string() : found->second;
}

}  // namespace mxbook::testing
