import assert from "node:assert/strict";
import { test } from "node:test";

import { useHostPage } from "./support/host-page.js";

// What is tried here keeps nothing, so one page will do for all of it.
const shown = useHostPage({}, { keep: true });

for (const [before, after, changes] of [
    [{ a: 1 }, { a: 1 }, []],
    [{ a: 1 }, { a: 2 }, [{ path: "a", before: "1", after: "2" }]],
    [{ a: [1, { b: "x" }] }, { a: [1, { b: "y" }, 3] }, [
        { path: "a[1].b", before: '"x"', after: '"y"' },
        { path: "a[2]", before: null, after: "3" },
    ]],
    [{ a: {} }, { a: [] }, [{ path: "a", before: "{}", after: "[]" }]],
    [{ a: null }, {}, [{ path: "a", before: "null", after: null }]],
    [{ b: 1, a: 1 }, { a: 1, b: 1 }, []],
    [1, { a: 1 }, [{ path: "(document)", before: "1", after: '{"a":1}' }]],
]) {
    test(`from ${JSON.stringify(before)} to ${JSON.stringify(after)} there are ${changes.length} changes`, async () => {
        assert.deepEqual(await shown.call("inspector/difference", "changes", before, after), changes);
    });
}

const leaf = (name, attributes = [], text = "") => ({ name, attributes, children: [], text });
for (const [text, read] of [
    ["<a/>", leaf("a")],
    ["<a></a>", leaf("a")],
    ["  <?xml version='1.0'?>\n<!-- c --><a b='1' c=\"2\" />\n", leaf("a", [["b", "1"], ["c", "2"]])],
    ["<a b=\"&lt;&amp;&quot;&apos;&gt;&#65;&#x42;&nbsp;\"/>", leaf("a", [["b", "<&\"'>AB&nbsp;"]])],
    ["<a>x<!-- y --><![CDATA[<z>]]></a>", leaf("a", [], "x<z>")],
    ["<a><b/>t<c/></a>", { name: "a", attributes: [], children: [leaf("b"), leaf("c")], text: "t" }],
    ["<a b=\"x > y\"/>", leaf("a", [["b", "x > y"]])],
]) {
    test(`the XML ${JSON.stringify(text)} is read`, async () => {
        assert.deepEqual(await shown.call("inspector/xml", "parseXml", text), read);
    });
}

for (const text of ["", "a", "<a>", "<a></b>", "</a>", "<a/><b/>", "<a b=1/>", "<a b=\"<\"/>", "< a/>", "<a", "<a><!-- </a>"]) {
    test(`the XML ${JSON.stringify(text)} is refused`, async () => {
        await assert.rejects(shown.call("inspector/xml", "parseXml", text));
    });
}
