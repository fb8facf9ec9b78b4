/**
 * Reads the XML of notices and events, for showing it. It is not a judge of XML: what it can't read it refuses, and
 * then the text is shown as it came.
 *
 * @typedef {object} XmlElement
 * @property {string} name
 * @property {[string, string][]} attributes with their values decoded
 * @property {XmlElement[]} children
 * @property {string} text between the children, decoded
 */

/** The text is not XML as this reader knows it. */
export class XmlError extends Error {
    name = "XmlError";
}

const declaration = /^\s*(?:<\?[^]*?\?>|<!--[^]*?-->|<!DOCTYPE[^>]*>)/;
const openTag = /<([^\s/>=<&"']+)((?:\s+[^\s/>=<&"']+\s*=\s*(?:"[^"<]*"|'[^'<]*'))*)\s*(\/?)>/y;
const closeTag = /<\/([^\s>]+)\s*>/y;
const comment = /<!--[^]*?-->/y;
const section = /<!\[CDATA\[([^]*?)\]\]>/y;
const words = /[^<]+/y;
const attribute = /([^\s/>=<&"']+)\s*=\s*(?:"([^"]*)"|'([^']*)')/g;

/**
 * @param {string} text of one document
 * @returns {XmlElement} its root
 * @throws {XmlError}
 */
export function parseXml(text) {
    let at = 0;
    for (let found = declaration.exec(text); found; found = declaration.exec(text.slice(at))) {
        at += found[0].length;
    }
    at += text.slice(at).match(/^\s*/)[0].length;

    const take = (pattern) => {
        pattern.lastIndex = at;
        const found = pattern.exec(text);
        at = found ? pattern.lastIndex : at;
        return found;
    };

    /** Elements that are open, the innermost last. */
    const open = [{ name: "", attributes: [], children: [], text: "" }];
    do {
        const inner = open.at(-1);
        let found;
        if ((found = take(openTag))) {
            const made = { name: found[1], attributes: attributesOf(found[2]), children: [], text: "" };
            inner.children.push(made);
            if (found[3] === "") {
                open.push(made);
            }
        } else if ((found = take(closeTag))) {
            if (found[1] !== inner.name) {
                throw new XmlError(`</${found[1]}> closes nothing`);
            }
            open.pop();
        } else if ((found = take(section))) {
            inner.text += found[1];
        } else if (!take(comment)) {
            if (!(found = take(words))) {
                throw new XmlError("the text is not XML");
            }
            inner.text += decode(found[0]);
        }
    } while (open.length > 1);
    const [root] = open[0].children;
    if (root === undefined || open[0].text.trim() !== "" || text.slice(at).trim() !== "") {
        throw new XmlError("the text is not one element");
    }
    return root;
}

/**
 * @param {XmlElement} element
 * @param {string} key
 * @returns {string} empty if the element lacks the attribute
 */
export function attributeOf(element, key) {
    return element.attributes.find(([name]) => name === key)?.[1] ?? "";
}

function attributesOf(text) {
    return [...text.matchAll(attribute)].map(([, name, one, other]) => [name, decode(one ?? other)]);
}

const names = Object.freeze({ lt: "<", gt: ">", amp: "&", quot: '"', apos: "'" });

function decode(text) {
    return text.replace(/&(?:#x([0-9a-f]+)|#(\d+)|(\w+));/gi, (whole, hex, decimal, name) => {
        if (name !== undefined) {
            return Object.hasOwn(names, name) ? names[name] : whole;
        }
        const point = hex === undefined ? Number.parseInt(decimal, 10) : Number.parseInt(hex, 16);
        return point <= 0x10ffff ? String.fromCodePoint(point) : whole;
    });
}
