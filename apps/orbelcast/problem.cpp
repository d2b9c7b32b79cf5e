#include "orbelcast/problem.h"

#include <ostream>
#include <utility>

#include "stream/failure_text.h"

namespace orbelcast {

Problem Problem::Of(const Failure& failure, std::string text) {
  return {.kind = WordOf(failure), .text = std::move(text), .status = failure.status};
}

Json ToJson(const Problem& problem) {
  Json json{{"kind", problem.kind}};
  if (problem.status != 0) json["status"] = problem.status;
  json["text"] = problem.text;
  return json;
}

void Tell(const Problem& problem, std::ostream& messages) {
  messages << "orbelcast: " << problem.text << '\n';
}

}  // namespace orbelcast
