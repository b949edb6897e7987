// Parsing within the engine: pieces of a text that is being parsed become statements.
//
// Each gives a statement that the caller owns, and throws what statementParser::createStatementFrom throws.
#pragma once

#include "parser/qxScriptMarks.h"
#include "parser/qxScriptSource.h"
#include "qxScriptParser.h"

namespace qx::script::parsing
{

// Null for a text that holds no statement.
statement* statementFrom(const textPiece& text, int flags);
// statementFrom for a text that is a call; `start` is its head.
statement* callFrom(const textPiece& text, const marks::head& start, int flags);
// The statement behind a bare word, `getvar(NAME)`; `name` holds nothing that parsing would cut at.
statement* variableFrom(const textPiece& name, int flags);

// Adds what the modules of hosts tell of their statements, in the order in which they are asked.
void listOfHosts(std::vector<statementInfo>& all);

} // namespace qx::script::parsing
