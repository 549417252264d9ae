"""The forms of co_await that g++ 12 compiles into code that destroys something twice, or not at all:

  - beside a temporary with designated initialisers,
  - beside a temporary lambda that captures,
  - beside `?:` with operands that may make a temporary,
  - in the condition of `if` or `while`; `if (init; condition)` may await in its init,

where "beside" means in the same full expression.

    awaits.py FOLDER...   prints file:line of each
"""

import re
import sys

from cpp_text import line_of, read, report, sources, without_words

CLOSING = {"(": ")", "[": "]", "{": "}"}
AWAIT = re.compile(r"(?<!operator )\bco_await\b")
DESIGNATED = re.compile(r"\{\s*\.\s*[A-Za-z_]")
DECLARED = re.compile(r"(?:[\w>]\s*[&*]?\s+(?P<name>\w+)\s*=?|\w\s*=)\s*$")
STATEMENT = re.compile(r"\s*(?:if|for|while|switch|try|do|co_return|return)\b")
CONDITION = re.compile(r"\b(?:if(?:\s+constexpr)?|while)\s*$")
CONTINUES = re.compile(r"\s*(?:[,);.(\]}?:=<>|+/%^-]|&&|!=)")
NOT_A_TYPE = re.compile(r"\b(?:co_return|return|co_await|co_yield|else|case)\s+\w+\s*$")


class Code:
    def __init__(self, text):
        self.text = without_words(text)
        self.partner = {}
        opened = []
        for match in re.finditer(r"[()\[\]{}]", self.text):
            at, found = match.start(), match.group()
            if found in CLOSING:
                opened.append(at)
            elif opened and CLOSING[self.text[opened[-1]]] == found:
                self.partner[at] = opened[-1]
                self.partner[opened.pop()] = at

    def is_block(self, opening):
        """Whether a brace opens statements, not initialisers: those have no semicolons."""
        closing = self.partner.get(opening, len(self.text))
        if STATEMENT.match(self.text, opening + 1):
            return True
        at = opening + 1
        while at < closing:
            if self.text[at] == ";":
                return True
            at = self.partner[at] + 1 if self.text[at] in CLOSING and at in self.partner else at + 1
        return not self.text[opening + 1:closing].strip() and self.text[:opening].rstrip().endswith(")")

    def heads_statement(self, opening):
        """Whether a bracket holds the condition, or the like, of a statement."""
        return bool(re.search(r"\b(?:if|constexpr|while|for|switch)\s*$", self.text[:opening][-40:]))

    def start(self, at):
        """Where the full expression with this position begins, and the brackets around the position that
        belong to it, the innermost first. A condition's bracket is the end of it."""
        around = []
        while at > 0:
            at -= 1
            found = self.text[at]
            if found == ";":
                return at + 1, around
            if found in ")]}":
                if found == "}" and not CONTINUES.match(self.text, at + 1):
                    return at + 1, around  # a statement before this one
                at = self.partner.get(at, at)
                if found == ")" and self.heads_statement(at):
                    return self.partner[at] + 1, around
            elif found == "{" and self.is_block(at):
                return at + 1, around
            elif found == "(" and self.heads_statement(at):
                return at + 1, around
            elif found in CLOSING:
                around.append(at)
        return 0, around

    def end(self, at):
        """Where the full expression with this position ends."""
        while at < len(self.text):
            found = self.text[at]
            if found == ";" or found == "}":
                return at
            if found in CLOSING and at in self.partner:
                at = self.partner[at]
            elif found == ")":
                return at
            at += 1
        return at

    def is_condition(self, end):
        """Whether a full expression is the condition of `if` or `while`."""
        if self.text[end:end + 1] != ")" or end not in self.partner:
            return False
        return bool(CONDITION.search(self.text[:self.partner[end]][-40:]))

    def without_blocks(self, start, end):
        """A full expression, the bodies of its lambdas blanked: those have expressions of their own."""
        expression = list(self.text[start:end])
        at = start
        while at < end:
            if self.text[at] == "{" and at in self.partner and self.is_block(at):
                closing = min(self.partner[at], end)
                expression[at + 1 - start:closing - start] = " " * (closing - at - 1)
                at = closing
            at += 1
        return "".join(expression)


def has_designated_temporary(expression):
    for match in DESIGNATED.finditer(expression):
        before = expression[:match.start()]
        declared = DECLARED.search(before) and not NOT_A_TYPE.search(before)
        if not (declared and before.count("(") == before.count(")") and before.count("{") == before.count("}")):
            return True
    return False


def has_capturing_lambda(expression):
    for match in re.finditer(r"\[([^\[\]]*(?:\[[^\]]*\][^\[\]]*)*)\]", expression):
        before = expression[:match.start()].rstrip()
        if re.search(r"[\w)\]]$", before) and not re.search(r"\b(?:co_return|return|co_await)$", before):
            continue  # an index
        if match.group(1).strip() and not match.group(1).startswith("["):
            return True
    return False


def has_choice_of_temporaries(expression):
    for match in re.finditer(r"\?", expression):
        start, depth = match.start(), 0
        while start > 0 and depth >= 0:
            start -= 1
            depth += {")": 1, "]": 1, "}": 1, "(": -1, "[": -1, "{": -1}.get(expression[start], 0)
            if depth == 0 and expression[start] in ",;":
                break
        end, depth = match.end(), 0
        while end < len(expression) and depth >= 0:
            depth += {"(": 1, "[": 1, "{": 1, ")": -1, "]": -1, "}": -1}.get(expression[end], 0)
            if depth == 0 and expression[end] in ",;":
                break
            end += 1
        operands = expression[match.end():end - 1 if depth < 0 else end]
        if re.search(r'[({\[+]|"\w', operands) or "co_await" in operands:
            return True
        if "co_await" in expression[start:match.start()]:
            return True
    return False


def faults_of(text):
    """Position and kind of each such co_await."""
    code = Code(text)
    for match in AWAIT.finditer(code.text):
        start, around = code.start(match.start())
        end = code.end(around[-1] if around else match.start())
        expression = code.without_blocks(start, end)
        if code.is_condition(end):
            yield match.start(), "co_await in a condition"
        if has_designated_temporary(expression):
            yield match.start(), "co_await beside a temporary with designated initialisers"
        if has_capturing_lambda(expression):
            yield match.start(), "co_await beside a temporary lambda that captures"
        if has_choice_of_temporaries(expression):
            yield match.start(), "co_await beside ?: whose operands may be temporaries"


def violations(roots):
    found = []
    for root in roots:
        for path in sources(root):
            text = read(path)
            found += [f"{path}:{line_of(text, at)}: {kind}" for at, kind in faults_of(text)]
    return found


if __name__ == "__main__":
    sys.exit(report(violations(sys.argv[1:])))
