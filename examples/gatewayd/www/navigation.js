// The list of areas with the groups of the one that is open, and the way up from a place.
import { byId, make } from "./dom.js";
import { t } from "./text.js";
import { isScalar } from "./schema.js";
import { hrefOf } from "./places.js";

const TITLES = {
  gateway: "Gateway",
  wifi: "Wi-Fi",
  network: "Network",
  security: "Security",
  service: "Services",
  mediashare: "Storage and media",
  qos: "Priorities",
  misc: "Display and messages",
};

export const areaTitle = (area) => t(TITLES[area] || area);

function link(href, text, isHere, isChanged) {
  return make(
    "a",
    { href, "aria-current": isHere ? "page" : null },
    text,
    isChanged
      ? make(
          "span",
          { className: "dot" },
          make("span", { className: "unseen" }, ` (${t("changed")})`),
        )
      : null,
  );
}

function groups(draft, place) {
  const names = Object.keys(draft.schemaAt([]).properties).filter(
    (name) => !isScalar(draft.schemaAt([name])),
  );
  return make(
    "ul",
    {},
    ...names.map((name) =>
      make(
        "li",
        {},
        link(
          hrefOf(draft.area, [name]),
          t(draft.schemaAt([name]).title),
          place.path[0] === name,
          draft.isChanged([name]),
        ),
      ),
    ),
  );
}

// `draft` is that of the place's area, or null.
export function showAreas(areas, place, draft) {
  byId("areas").setAttribute("aria-label", t("Areas"));
  byId("areas").replaceChildren(
    make(
      "ul",
      {},
      make("li", {}, link("#/", t("Overview"), place.area === null, false)),
      ...areas.map((area) =>
        make(
          "li",
          {},
          link(
            hrefOf(area),
            areaTitle(area),
            place.area === area && place.path.length === 0,
            draft !== null && draft.area === area && draft.isDirty(),
          ),
          draft !== null && draft.area === area ? groups(draft, place) : null,
        ),
      ),
    ),
  );
}

// The steps above the place that are places themselves.
export function showCrumbs(place, draft) {
  byId("crumbs").setAttribute("aria-label", t("Path"));
  const steps = [];
  if (draft !== null && place.path.length > 0) {
    steps.push(make("li", {}, make("a", { href: hrefOf(place.area) }, areaTitle(place.area))));
    for (let length = 1; length < place.path.length; length += 1) {
      const path = place.path.slice(0, length);
      if (draft.placeOf(path).length === length) {
        steps.push(
          make("li", {}, make("a", { href: hrefOf(place.area, path) }, draft.titleOf(path))),
        );
      }
    }
  }
  byId("crumbs").replaceChildren(...(steps.length > 0 ? [make("ol", {}, ...steps)] : []));
}
