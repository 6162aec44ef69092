// SPDX-License-Identifier: MIT
#include "tavrin/widget/note_logger.h"

#include <string>

namespace tavrin {
namespace {

thread_local const NoteSink* threadSink = nullptr;

}  // namespace

void NoteLogger::error(std::string_view code, std::string_view message) {
    const NoteSink& sink = threadSink ? *threadSink : sink_;
    if (sink) sink({std::string(code), std::string(message)});
}

NoteLogger::Hearing::Hearing(const NoteSink& sink) : before_(std::exchange(threadSink, &sink)) {}

NoteLogger::Hearing::~Hearing() { threadSink = before_; }

}  // namespace tavrin
