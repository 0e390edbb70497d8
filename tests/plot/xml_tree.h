// A strict reader of well-formed XML for the picture tests: elements, attributes, text and the
// five predefined entities (and numeric character references). Anything a conforming parser
// would refuse (unclosed or crossed tags, unquoted or repeated attributes, a bare "&" or "<",
// text outside the root element, a second root) makes parse() return false with a reason.
// Processing instructions, comments and CDATA are understood; a DOCTYPE is refused (the
// pictures have none).

#pragma once

#include <cctype>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace kalmo_test {

struct XmlElement {
    std::string name;
    std::map<std::string, std::string> attributes;
    std::string text;  // all character data directly inside, entities resolved
    std::vector<std::unique_ptr<XmlElement>> children;

    std::string attribute(const std::string& key) const {
        auto found = attributes.find(key);
        return found == attributes.end() ? std::string() : found->second;
    }
    // The text directly inside, then the text of the children, depth first.
    std::string allText() const {
        std::string all = text;
        for (const auto& child : children) all += child->allText();
        return all;
    }
    const XmlElement* byId(const std::string& id) const {
        if (attribute("id") == id) return this;
        for (const auto& child : children)
            if (const XmlElement* found = child->byId(id)) return found;
        return nullptr;
    }
    void collect(const std::string& elementName, const std::string& cssClass, std::vector<const XmlElement*>& found) const {
        if (name == elementName && (cssClass.empty() || attribute("class") == cssClass)) found.push_back(this);
        for (const auto& child : children) child->collect(elementName, cssClass, found);
    }
};

class XmlReader {
public:
    bool parse(const std::string& text, XmlElement& root, std::string& why) {
        text_ = &text;
        at_ = 0;
        if (text.compare(0, 5, "<?xml") == 0 && !skipPast("?>", why)) return false;
        skipMisc();
        if (at_ >= text.size() || text[at_] != '<') return fail("no root element", why);
        if (!element(root, why)) return false;
        skipMisc();
        if (at_ != text.size()) return fail("content after the root element", why);
        return true;
    }

private:
    bool fail(const std::string& what, std::string& why) {
        why = what + " at offset " + std::to_string(at_);
        return false;
    }
    const std::string& t() const { return *text_; }
    bool startsWith(const char* s) const { return t().compare(at_, std::char_traits<char>::length(s), s) == 0; }
    void skipSpace() {
        while (at_ < t().size() && std::isspace(static_cast<unsigned char>(t()[at_]))) ++at_;
    }
    bool skipPast(const char* end, std::string& why) {
        size_t found = t().find(end, at_);
        if (found == std::string::npos) return fail(std::string("no ") + end, why);
        at_ = found + std::char_traits<char>::length(end);
        return true;
    }
    void skipMisc() {
        std::string ignored;
        for (;;) {
            skipSpace();
            if (startsWith("<!--")) {
                if (!skipPast("-->", ignored)) return;
            } else if (startsWith("<?")) {
                if (!skipPast("?>", ignored)) return;
            } else {
                return;
            }
        }
    }
    static bool nameChar(char c) {
        return std::isalnum(static_cast<unsigned char>(c)) || c == '_' || c == '-' || c == '.' || c == ':' ||
               static_cast<unsigned char>(c) >= 0x80;
    }
    bool name(std::string& out, std::string& why) {
        size_t start = at_;
        if (at_ >= t().size() || std::isdigit(static_cast<unsigned char>(t()[at_])) || t()[at_] == '-' ||
            t()[at_] == '.')
            return fail("bad name", why);
        while (at_ < t().size() && nameChar(t()[at_])) ++at_;
        if (at_ == start) return fail("empty name", why);
        out = t().substr(start, at_ - start);
        return true;
    }
    bool entity(std::string& out, std::string& why) {
        size_t end = t().find(';', at_);
        if (end == std::string::npos || end - at_ > 10) return fail("bare &", why);
        std::string ref = t().substr(at_ + 1, end - at_ - 1);
        if (ref == "amp") out += '&';
        else if (ref == "lt") out += '<';
        else if (ref == "gt") out += '>';
        else if (ref == "quot") out += '"';
        else if (ref == "apos") out += '\'';
        else if (ref.size() > 1 && ref[0] == '#') out += '?';
        else return fail("unknown entity &" + ref + ";", why);
        at_ = end + 1;
        return true;
    }
    bool element(XmlElement& e, std::string& why) {
        ++at_;  // '<'
        if (!name(e.name, why)) return false;
        for (;;) {
            size_t before = at_;
            skipSpace();
            if (at_ >= t().size()) return fail("end inside a tag", why);
            if (startsWith("/>")) {
                at_ += 2;
                return true;
            }
            if (t()[at_] == '>') {
                ++at_;
                break;
            }
            if (at_ == before) return fail("no space before an attribute", why);
            std::string key;
            if (!name(key, why)) return false;
            skipSpace();
            if (at_ >= t().size() || t()[at_] != '=') return fail("attribute without =", why);
            ++at_;
            skipSpace();
            if (at_ >= t().size() || (t()[at_] != '"' && t()[at_] != '\'')) return fail("unquoted attribute", why);
            const char quote = t()[at_++];
            std::string value;
            while (at_ < t().size() && t()[at_] != quote) {
                if (t()[at_] == '<') return fail("< in an attribute", why);
                if (t()[at_] == '&') {
                    if (!entity(value, why)) return false;
                } else {
                    value += t()[at_++];
                }
            }
            if (at_ >= t().size()) return fail("unclosed attribute", why);
            ++at_;
            if (!e.attributes.emplace(key, value).second) return fail("repeated attribute " + key, why);
        }
        // Content up to the matching end tag.
        for (;;) {
            if (at_ >= t().size()) return fail("no end tag for " + e.name, why);
            if (startsWith("</")) {
                at_ += 2;
                std::string closing;
                if (!name(closing, why)) return false;
                if (closing != e.name) return fail("end tag " + closing + " closes " + e.name, why);
                skipSpace();
                if (at_ >= t().size() || t()[at_] != '>') return fail("bad end tag", why);
                ++at_;
                return true;
            }
            if (startsWith("<!--")) {
                if (!skipPast("-->", why)) return false;
            } else if (startsWith("<![CDATA[")) {
                size_t start = at_ + 9;
                if (!skipPast("]]>", why)) return false;
                e.text += t().substr(start, at_ - 3 - start);
            } else if (startsWith("<?")) {
                if (!skipPast("?>", why)) return false;
            } else if (startsWith("<!")) {
                return fail("declaration inside content", why);
            } else if (t()[at_] == '<') {
                auto child = std::make_unique<XmlElement>();
                if (!element(*child, why)) return false;
                e.children.push_back(std::move(child));
            } else if (t()[at_] == '&') {
                if (!entity(e.text, why)) return false;
            } else {
                e.text += t()[at_++];
            }
        }
    }

    const std::string* text_ = nullptr;
    size_t at_ = 0;
};

}  // namespace kalmo_test
