# SPDX-License-Identifier: MIT
"""Colours and sizes of the page's elements in each state that a reader can bring about."""

STATES = [], ["hover"], ["focus", "focus-visible"], ["hover", "active", "focus"]

INTERACTIVE = "button, input, select, summary, label, tr, [tabindex]"

# One element of each look: the same tag, classes and pressed state, in the same part of the page.
SAMPLE = """(() => {
    const looks = new Map();
    for (const one of document.querySelectorAll(arguments[0])) {
        const part = one.closest("[id]")?.id;
        const look = [one.tagName, one.className, one.ariaPressed, one.ariaSort, one.disabled,
            one.checked, part, one.parentElement.className].join();
        if (one.checkVisibility() && !looks.has(look))
            looks.set(look, one);
    }
    window.sample = [...looks.values()];
    return sample.length;
})()"""

LUMINANCE = """(rgb) => rgb.map((value) => value / 255)
    .map((c) => c <= 0.04045 ? c / 12.92 : ((c + 0.055) / 1.055) ** 2.4)
    .reduce((sum, c, i) => sum + c * [0.2126, 0.7152, 0.0722][i], 0)"""

# The texts below 4.5:1 in an element, as messages. Half-transparent colours are blended with what
# is behind them; a text in an element of reduced opacity fades with it.
LOW_CONTRASTS = """((root) => {
    const parse = (text) => {
        const [r, g, b, a = 1] = text.match(/[\\d.]+/g).map(Number);
        return { rgb: [r, g, b], a };
    };
    const blend = (top, a, below) => top.map((value, i) => value * a + below[i] * (1 - a));
    const pathOf = (one) => one ? [...pathOf(one.parentElement), one] : [];
    const coloursOf = (one) => {
        let behind = [255, 255, 255], ink = null;
        for (const step of pathOf(one)) {
            const style = getComputedStyle(step), fade = Number(style.opacity);
            const { rgb, a } = parse(style.backgroundColor);
            const base = behind;
            behind = blend(rgb, a * fade, behind);
            if (step === one) {
                const text = parse(style.color);
                ink = blend(text.rgb, text.a * fade, fade < 1 ? base : behind);
            } else if (fade < 1)
                throw Error("test: fading around a text is not supported");
        }
        return [ink, behind];
    };
    const luminance = %s;
    const hasText = (one) => [...one.childNodes]
        .some((node) => node.nodeType === 3 && node.data.trim() !== "");
    return [root, ...root.querySelectorAll("*")]
        .filter((one) => hasText(one) && one.checkVisibility() && !one.closest("svg"))
        .flatMap((one) => {
            const [dark, light] = coloursOf(one).map(luminance).sort((a, b) => a - b);
            const ratio = (light + 0.05) / (dark + 0.05);
            return ratio >= 4.5 ? [] :
                [`${one.tagName} ${one.className} "${one.textContent}": ${ratio.toFixed(2)}`];
        });
})(%%s)""" % LUMINANCE

CONTRAST = """((colours) => {
    const probe = document.createElement("i");
    document.body.append(probe);
    const [dark, light] = colours.map((colour) => {
        probe.style.color = `var(${colour})`;
        return (%s)(getComputedStyle(probe).color.match(/[\\d.]+/g).map(Number));
    }).sort((a, b) => a - b);
    probe.remove();
    return (light + 0.05) / (dark + 0.05);
})(arguments[0])""" % LUMINANCE


def contrast(browser, *variables):
    """Returns the contrast of two colours of the style sheet."""
    return browser.ask(CONTRAST, variables)


def low_contrasts(browser):
    """Returns a message for each text with too little contrast, in any state."""
    messages = list(browser.ask(LOW_CONTRASTS % "document.body"))
    browser.command("DOM.enable")
    browser.command("CSS.enable")
    for i in range(browser.ask(SAMPLE, INTERACTIVE)):
        for state in STATES:
            force(browser, i, state)
            for message in browser.ask(LOW_CONTRASTS % f"sample[{i}]"):
                messages.append(f"{'+'.join(state)}: {message}")
        force(browser, i, [])
    browser.command("CSS.disable")
    return messages


def force(browser, index, state):
    """Puts an element of the sample into a state."""
    browser.command("DOM.getDocument", depth=0)
    remote = browser.command("Runtime.evaluate", expression=f"sample[{index}]")["result"]
    node = browser.command("DOM.requestNode", objectId=remote["objectId"])["nodeId"]
    browser.command("CSS.forcePseudoState", nodeId=node, forcedPseudoClasses=state)


def small_targets(browser):
    """Returns a message for each control that is less than 24 pixels wide or high. The target of a
    checkbox is its label."""
    return browser.ask("""Array.from(document.querySelectorAll(
            "button, select, summary, label, input:not([type=checkbox]), [tabindex], a:only-child"))
        .filter((one) => one.checkVisibility())
        .map((one) => [one, one.getBoundingClientRect()])
        .filter(([, { width, height }]) => width < 24 || height < 24)
        .map(([one, { width, height }]) =>
            `${one.tagName} ${one.className} "${one.textContent}": ${width} x ${height}`)""")
