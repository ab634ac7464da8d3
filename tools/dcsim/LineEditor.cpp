// SPDX-License-Identifier: Apache-2.0
#include "tools/dcsim/LineEditor.h"

#include <algorithm>
#include <clocale>
#include <cstdio>
#include <stdexcept>
#include <utility>

#include "tools/session/Completion.h"

namespace dcsim {

namespace {

constexpr int kLongestHistory = 1000;

// What all words begin with; there is at least one.
std::string commonBeginning(const std::vector<std::string>& words) {
    std::string common = words.front();
    for (const std::string& word : words) {
        const auto end = std::mismatch(common.begin(), common.end(), word.begin(), word.end()).first;
        common.erase(end, common.end());
    }
    return common;
}

// Below the line that is edited, which is drawn anew after it.
void printList(const std::vector<std::string>& words) {
    constexpr size_t kWidth = 80;
    size_t column = 0;
    for (const std::string& word : words) {
        const bool fits = column != 0 && column + 2 + word.size() <= kWidth;
        fputs(fits ? "  " : "\n", stdout);
        fputs(word.c_str(), stdout);
        column = (fits ? column + 2 : 0) + word.size();
    }
    fputs("\n", stdout);
    fflush(stdout);
}

}  // namespace

LineEditor::LineEditor(Completer completer)
    : completionsOf(std::move(completer)), editor(el_init("dcsim", stdin, stdout, stderr)), past(history_init()) {
    if (editor == nullptr || past == nullptr) throw std::runtime_error("the terminal cannot be used; expected one");
    setlocale(LC_CTYPE, "");  // NOLINT(concurrency-mt-unsafe): before any other thread begins
    HistEvent event;
    history(past, &event, H_SETSIZE, kLongestHistory);
    history(past, &event, H_SETUNIQUE, 1);
    el_set(editor, EL_CLIENTDATA, this);
    el_set(
        editor, EL_PROMPT, +[](EditLine*) {
            static char prompt[] = "dcsim> ";
            return prompt;
        });
    el_set(editor, EL_EDITOR, "emacs");
    el_set(editor, EL_HIST, history, past);
    el_set(editor, EL_ADDFN, "complete", "complete the word", &LineEditor::onTabulator);
    el_set(editor, EL_BIND, "^I", "complete", nullptr);
    el_set(editor, EL_BIND, "^R", "em-inc-search-prev", nullptr);
    el_set(editor, EL_BIND, "^C", "em-kill-line", nullptr);
    el_set(editor, EL_SETTY, "-d", "-isig", nullptr);  // while a line is edited Ctrl-C is a key
}

LineEditor::~LineEditor() {
    history_end(past);
    el_end(editor);
}

std::optional<std::string> LineEditor::next() {
    int length = 0;
    const char* const text = el_gets(editor, &length);
    if (text == nullptr || length <= 0) return std::nullopt;
    std::string line(text, static_cast<size_t>(length));
    line.erase(line.find_last_not_of("\r\n") + 1);
    HistEvent event;
    if (!line.empty()) history(past, &event, H_ENTER, line.c_str());
    return line;
}

unsigned char LineEditor::onTabulator(EditLine* editor, int /*key*/) {
    LineEditor* self = nullptr;
    el_get(editor, EL_CLIENTDATA, &self);
    return self->complete();
}

unsigned char LineEditor::complete() {
    const LineInfo* const line = el_line(editor);
    const std::string_view before(line->buffer, static_cast<size_t>(line->cursor - line->buffer));
    const std::vector<std::string> words = completionsOf(before);
    if (words.empty()) return CC_ERROR;
    std::string rest = commonBeginning(words).substr(simulator::lastWordOf(before).size());
    if (words.size() == 1 && words.front().back() != '/') rest += ' ';
    if (rest.empty()) {
        printList(words);
        return CC_REDISPLAY;
    }
    return el_insertstr(editor, rest.c_str()) == 0 ? CC_REFRESH : CC_ERROR;
}

}  // namespace dcsim
