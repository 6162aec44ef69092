// SPDX-License-Identifier: MIT
#include "tavrin/diagnostics/written_rules.h"
#include "tavrin/images/web_image_node.h"
#include "tavrin/modifiers/widget_url_modifier.h"
#include "tavrin/nodes/link_node.h"
#include "tavrin/platform/foundation/net/url.h"

namespace tavrin {
namespace {

bool isAddress(const WrittenRecord& record, const WrittenMember& member, bool hasPictureFolder) {
    if (isProperty<&LinkNode::url, &WidgetURLModifier::url>(record, member)) return true;
    return !hasPictureFolder && isProperty<&WebImageNode::url, &WebImageNode::alt>(record, member);
}

}  // namespace

void findInvalidURLs(const WrittenSubject& subject, Findings& findings) {
    forEachProperty(subject.document, [&](const WrittenRecord& record, const WrittenMember& member) {
        if (!isAddress(record, member, subject.hasPictureFolder) || !subject.outline.isString(member.value)) return;
        const auto expression = expressionIn(subject.document, member);
        const auto text = expression ? textBehind(subject, *expression) : subject.outline.string(member.value);
        if (!text || URL::parse(*text)) return;
        const std::string_view whose = expression ? "the model gives " : "";
        findings.add(Rule::invalidURL, subject.outline, member.value,
                     std::string(whose) + inQuotes(text->substr(0, 200)) + (expression ? ", which" : "") +
                         " is no address, so it leads nowhere");
    });
}

}  // namespace tavrin
