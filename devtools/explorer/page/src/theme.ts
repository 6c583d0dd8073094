// Light or dark: what the system says, until the user says otherwise. Kept in the tab.

import { el } from "./dom";

const storageKey = "theme";
const themes = ["system", "light", "dark"];

function apply(theme: string): void {
  document.documentElement.dataset.theme = theme;
}

export function makeThemeField(): HTMLElement {
  const kept = sessionStorage.getItem(storageKey) ?? "";
  const select = el("select", { "aria-label": "Theme" });
  for (const theme of themes) {
    select.append(el("option", { value: theme }, theme.charAt(0).toUpperCase() + theme.slice(1)));
  }
  select.value = themes.includes(kept) ? kept : "system";
  apply(select.value);
  select.addEventListener("change", () => {
    sessionStorage.setItem(storageKey, select.value);
    apply(select.value);
  });
  return select;
}
