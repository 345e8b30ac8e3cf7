// SPDX-FileCopyrightText: 2026 Halvar Controller contributors
// SPDX-License-Identifier: Apache-2.0
#ifndef FUZZ_XMLMUTATOR_H
#define FUZZ_XMLMUTATOR_H

#include <string>
#include <vector>

namespace fuzz {

/// The words of a file format, which the mutator puts where they belong. Linking xmlmutator.cpp makes a
/// target mutate its documents by elements, attributes and values, and now and then by bytes.
struct XmlVocabulary
{
    std::vector<std::string> elements;
    std::vector<std::string> attributes;
    std::vector<std::string> values;
};

/// Defined by the target.
const XmlVocabulary &vocabulary();

} // namespace fuzz

#endif // FUZZ_XMLMUTATOR_H
